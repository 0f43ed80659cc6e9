#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "linux/media/MediaInput.h"

namespace quilex {

/// A video file on its way to the player. A thread of its own reads the file, and is left behind when the file system
/// does not answer, so that nobody else waits for it. For use from any thread.
class MediaStream {
 public:
  /// What the player is given: the packets of the file, remuxed so that they can be repeated without a gap, or the
  /// bytes of the file as they are.
  enum class Form { packets, bytes };
  struct Facts {
    Form form;
    /// libavformat's name for the format of the stream.
    std::string format;
    /// Quarter turns clockwise, 0 to 3, by which the pictures are turned for display.
    int quarterTurns;
  };
  using Result = std::variant<Facts, MediaInput::Error>;

  /// How long a file system may take to answer.
  static constexpr std::chrono::seconds kPatience{2};

  /// Opens the file. `opened` is called once, from another thread, when the facts or the error are there, and not after
  /// the stream is destroyed or cancelled. Packets are handed out as bytes where that cannot be.
  MediaStream(std::filesystem::path file, Form wanted, bool repeats, std::function<void()> opened);
  /// Cancels; does not wait for the thread.
  ~MediaStream();
  MediaStream(const MediaStream&) = delete;
  MediaStream& operator=(const MediaStream&) = delete;

  /// Null until the file was opened or refused.
  const Result* result() const;
  /// Whether the packets start again at the end of the file, for ever. Those of a single picture never do.
  void setRepeating(bool repeats);
  /// Whether the packets have ended and were those of a single picture without sound.
  bool isStill() const;
  /// Ends all reading, now and later.
  void cancel();

  /// For the player's thread. The next bytes, at least one, for which it may wait; 0 at the end; -1 when the stream was
  /// cancelled, or the file cannot be read or does not answer.
  std::int64_t read(char* buffer, std::uint64_t bytes);
  /// Of the form `bytes` only; -1 otherwise.
  std::int64_t seek(std::int64_t offset);
  std::int64_t size() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace quilex
