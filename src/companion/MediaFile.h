#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>

#include "base/Result.h"
#include "linux/media/MediaInput.h"

namespace quilex {

/// What the library keeps about a video.
struct MediaFacts {
  double seconds = 0;
  /// Pixels, as the video is shown: turned as its rotation says.
  int width = 0;
  int height = 0;
  /// Width to height in smallest terms, with pixels that are not square taken into account: "16:9".
  std::string ratio;
  double framesPerSecond = 0;
  std::int64_t frames = 0;
  bool hasSound = false;
};

/// A video file, opened with the demuxers that the wallpaper plays with and no others.
class MediaFile {
 public:
  /// `file` is absolute. Fails for what the wallpaper would not play, and once `interrupted` says so.
  static Result<MediaFile> open(const std::filesystem::path& file, MediaInput::Interrupted interrupted);

  const MediaFacts& facts() const { return description_; }

  /// A JPEG of a frame a little into the video, upright and at most 640 pixels wide. Fails if none can be decoded.
  Result<std::string> cover();

 private:
  MediaFile(MediaInput input, MediaInput::Interrupted interrupted)
      : interrupted_(std::move(interrupted)), input_(std::move(input)) {}
  void describe();

  MediaInput::Interrupted interrupted_;
  MediaInput input_;
  MediaFacts description_;
};

}  // namespace quilex
