#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "linux/toolkit/loop/Wakeup.h"
#include "platform/FileFinder.h"
#include "platform/RunLoop.h"

namespace quilex {

/// Looks for files in threads of its own, one for each question. A thread whose file system does not answer is left
/// behind, and another goes on with the remaining files. While it hangs, the other files of the folder that it hangs in
/// count as unanswered at once, so that no folder holds more than a few threads. Nothing waits for such a thread, at
/// the end neither.
class ThreadedFileFinder : public FileFinder {
 public:
  /// Whether a regular file exists there; called in other threads, and may block.
  using Look = std::function<bool(const std::filesystem::path&)>;

  /// `runLoop` must outlive the finder. Needs a QCoreApplication.
  explicit ThreadedFileFinder(RunLoop& runLoop, Look look = isRegularFile);
  /// Drops the questions that are open.
  ~ThreadedFileFinder() override;

  [[nodiscard]] Disposable findFirst(std::vector<std::filesystem::path> files,
                                     std::function<void(Answer)> reply) override;

  static bool isRegularFile(const std::filesystem::path& file);

 private:
  struct Mailbox;
  struct Progress;
  struct Question {
    std::vector<std::filesystem::path> files;
    /// Empty once nobody waits for the answer.
    std::function<void(Answer)> reply;
    bool someUnanswered = false;
    /// What the thread that looks for the files is at.
    std::shared_ptr<Progress> progress;
    std::optional<Disposable> deadline;
  };
  using Questions = std::map<std::uint64_t, Question>;

  void look(std::uint64_t id, std::size_t from);
  void watch(std::uint64_t id);
  void collect();
  bool hangs(const std::filesystem::path& file) const;
  void answer(std::uint64_t id, std::optional<std::size_t> found);

  RunLoop& loop_;
  Look lookAt_;
  Questions questions_;
  std::uint64_t lastQuestion_ = 0;
  /// The folders that threads hang in, by the progress of those threads.
  std::map<std::shared_ptr<Progress>, std::filesystem::path> hanging_;
  Wakeup wakeup_;
  std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace quilex
