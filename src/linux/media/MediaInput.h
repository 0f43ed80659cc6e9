#pragma once

extern "C" {
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
}

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace quilex {

struct FreePacket {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
using Packet = std::unique_ptr<AVPacket, FreePacket>;

/// A regular file that is open for reading, from any place in it. For use from any thread.
class OpenFile {
 public:
  /// Null, with errno set, when the file cannot be opened; EINVAL stands for what is not a regular file.
  static std::shared_ptr<const OpenFile> open(const std::filesystem::path& file);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  /// Reads at most `bytes` bytes at `offset`; returns how many, 0 at the end, or an errno value below zero.
  std::int64_t read(void* buffer, std::size_t bytes, std::int64_t offset) const;
  /// In bytes; an errno value below zero when it is not known.
  std::int64_t size() const;

 private:
  explicit OpenFile(int openDescriptor) : descriptor_(openDescriptor) {}
  const int descriptor_;
};

/// A video file that libavformat reads through one descriptor and nothing else: whatever the file says, no other file
/// and no address is opened. Only the demuxers of kMediaFormats are used. For use from one thread at a time.
class MediaInput {
 public:
  /// Why a file cannot be played, as a clause that follows its name: "is not a regular file".
  struct Error {
    std::string message;
  };
  /// Whether the reading should stop; called often, from the thread that reads.
  using Interrupted = std::function<bool()>;
  using Opened = std::variant<MediaInput, Error>;

  /// Opens the file at an absolute path, which must be a regular file with a video stream of at most kMostPixels.
  static Opened open(const std::filesystem::path& file, Interrupted interrupted);
  /// The same open file, read from its start again.
  Opened reopen() const;

  const std::shared_ptr<const OpenFile>& file() const { return openFile_; }
  AVFormatContext* context() const { return source_.get(); }
  /// The streams to be played.
  AVStream* picture() const { return source_->streams[pictureIndex_]; }
  /// Null for a silent video.
  AVStream* sound() const { return soundIndex_ >= 0 ? source_->streams[soundIndex_] : nullptr; }
  /// Quarter turns clockwise by which the pictures are turned for display, 0 to 3.
  int quarterTurns() const;

 private:
  struct Close {
    void operator()(AVFormatContext* context) const;
  };

  MediaInput(std::filesystem::path name, std::shared_ptr<const OpenFile> readFile, Interrupted check);
  static Opened read(MediaInput input);
  int openContext();
  std::string chooseStreams();

  std::filesystem::path path_;
  std::shared_ptr<const OpenFile> openFile_;
  Interrupted interrupted_;
  std::unique_ptr<AVFormatContext, Close> source_;
  int pictureIndex_ = -1;
  int soundIndex_ = -1;
};

}  // namespace quilex
