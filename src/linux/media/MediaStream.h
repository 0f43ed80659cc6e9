#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "base/Result.h"

namespace quilex {

/// A video file on its way to the player. A thread of its own reads the file. Nobody waits for that thread: it is left
/// behind when the file system does not answer. For use from any thread.
class MediaStream {
 public:
  /// What the player reads: the packets of the file, remuxed so that they can be repeated without a gap, or the bytes
  /// of the file as they are.
  enum class Form { packets, bytes };
  struct Facts {
    Form form;
    /// libavformat's name for the format of the stream.
    std::string format;
    /// Quarter turns clockwise, 0 to 3, by which frames are turned for display.
    int quarterTurns;
  };

  /// How long a file system may take to answer.
  static constexpr std::chrono::seconds kPatience{2};

  /// Opens the file. `whenOpened` is called once, from another thread, when the file is open or was refused; not after
  /// the stream is destroyed or cancelled. A file whose packets cannot be remuxed has the form `bytes`.
  MediaStream(std::filesystem::path file, Form form, bool repeats, std::function<void()> whenOpened);
  /// Cancels; does not wait for the thread.
  ~MediaStream();
  MediaStream(const MediaStream&) = delete;
  MediaStream& operator=(const MediaStream&) = delete;

  /// Null until the file is open or was refused. The failure is a clause that follows the name of the file.
  const Result<Facts>* opened() const;
  /// Whether the packets start again at the end of the file, each time. Those of a single picture never do.
  void setRepeating(bool repeats);
  /// Whether the packets have ended and were those of a single picture without sound.
  bool isStill() const;
  /// Ends all reading, now and later.
  void cancel();

  /// For the player's thread. Waits for at least one byte. Returns how many were read; 0 at the end; -1 when the stream
  /// was cancelled, or the file cannot be read or does not answer.
  std::int64_t read(char* buffer, std::uint64_t bytes);
  /// These two return -1 for the form `packets`.
  std::int64_t seek(std::int64_t offset);
  std::int64_t size() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace quilex
