#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "base/Result.h"
#include "linux/media/Libav.h"

namespace quilex {

/// A regular file that is open for reading at any position. For use from any thread.
class OpenFile {
 public:
  /// Fails, with a clause that follows the name of the file, when that is not a regular file or cannot be opened.
  static Result<std::shared_ptr<const OpenFile>> open(const std::filesystem::path& file);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  /// Reads at most `bytes` bytes at `offset`; returns how many, 0 at the end, or an errno value below zero.
  std::int64_t read(void* buffer, std::size_t bytes, std::int64_t offset) const;
  /// In bytes, or an errno value below zero.
  std::int64_t size() const;

 private:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  const int descriptor_;
};

/// A video file that libavformat reads through one descriptor. It opens no other file and no address, whatever the file
/// says, and uses only the demuxers of kMediaFormats. For use from one thread at a time.
class MediaInput {
 public:
  /// Whether the reading should stop; called often, from the thread that reads.
  using Interrupted = std::function<bool()>;

  /// Opens the file at an absolute path. It must be a regular file with a video stream of at most kMostPixels. The
  /// failure is a clause that follows the name of the file: "is not a regular file".
  static Result<MediaInput> open(const std::filesystem::path& file, Interrupted interrupted);
  ~MediaInput();
  MediaInput(MediaInput&& other) noexcept;
  MediaInput& operator=(MediaInput&& other) noexcept;

  /// The same open file, read from its start again.
  Result<MediaInput> reopen() const;

  const std::shared_ptr<const OpenFile>& file() const { return openFile_; }
  AVFormatContext* context() const;
  /// The streams to be played.
  AVStream* picture() const { return context()->streams[pictureIndex_]; }
  /// Null for a silent video.
  AVStream* sound() const { return soundIndex_ >= 0 ? context()->streams[soundIndex_] : nullptr; }
  /// Quarter turns clockwise by which frames are turned for display, 0 to 3.
  int quarterTurns() const;

 private:
  struct Source;

  MediaInput(std::filesystem::path path, std::shared_ptr<const OpenFile> openFile, Interrupted interrupted);
  static Result<MediaInput> read(MediaInput input);
  /// Returns an error code of libav, or 0.
  int openContext();
  /// Fails for streams that are too large.
  Outcome checkSizes() const;
  Outcome chooseStreams();

  std::filesystem::path path_;
  std::shared_ptr<const OpenFile> openFile_;
  Interrupted interrupted_;
  std::unique_ptr<Source> source_;
  int pictureIndex_ = -1;
  int soundIndex_ = -1;
};

}  // namespace quilex
