#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "linux/toolkit/loop/QtBackgroundWork.h"
#include "platform/FileFinder.h"
#include "platform/RunLoop.h"

namespace quilex {

/// Looks for files on other threads, one for each question. A thread whose file system does not answer is given up, and
/// another one continues with the remaining files. While a thread hangs, the other files of its folder count as
/// unanswered at once, so that a folder blocks only a few threads. Nothing waits for such a thread, not even the
/// destructor.
class ThreadedFileFinder : public FileFinder {
 public:
  /// Whether a regular file exists there; called on other threads, and may block.
  using Look = std::function<bool(const std::filesystem::path&)>;

  /// `runLoop` must outlive the finder. Needs a QCoreApplication.
  explicit ThreadedFileFinder(RunLoop& runLoop, Look look = isRegularFile);
  /// Drops the open questions.
  ~ThreadedFileFinder() override;

  [[nodiscard]] Disposable findFirst(std::vector<std::filesystem::path> files,
                                     std::function<void(Answer)> reply) override;

  static bool isRegularFile(const std::filesystem::path& file);

 private:
  struct Progress;
  struct Question {
    std::vector<std::filesystem::path> files;
    /// Empty once nobody waits for the answer.
    std::function<void(Answer)> reply;
    bool someUnanswered = false;
    /// The thread that looks for the files.
    std::shared_ptr<Progress> progress;
    std::optional<Disposable> thread;
    std::optional<Disposable> deadline;
  };
  using Questions = std::map<std::uint64_t, Question>;
  struct Hanging {
    std::filesystem::path folder;
    Disposable thread;
  };

  void search(std::uint64_t id, std::size_t from);
  void watch(std::uint64_t id);
  void collect(std::uint64_t id, const std::shared_ptr<Progress>& progress);
  bool hangs(const std::filesystem::path& file) const;
  void answer(std::uint64_t id, std::optional<std::size_t> found);

  RunLoop& runLoop_;
  Look look_;
  QtBackgroundWork work_{std::chrono::milliseconds(0)};
  /// Shared with the tokens, which may outlive the finder.
  std::shared_ptr<Questions> questions_;
  std::uint64_t lastQuestion_ = 0;
  /// The threads that were given up and have not ended.
  std::map<std::shared_ptr<Progress>, Hanging> hanging_;
};

}  // namespace quilex
