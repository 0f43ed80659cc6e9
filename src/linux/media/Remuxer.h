#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "linux/media/MediaInput.h"
#include "linux/media/RemuxedSound.h"

namespace quilex {

/// Writes a video file as one endless stream: the packets of one pass after another, with timestamps that continue, so
/// that a decoder does not stop between the last frame of a pass and the first of the next. Nothing is decoded. The
/// stream is in the NUT format, whose timestamps are exact in the file's own units (FFmpeg's doc/nut.texi and
/// libavformat/nutenc.c).
///
/// A pass lasts as long as its pictures. Sound that is longer by at most half a second is cut, to the sample; longer
/// sound prolongs the pass. For use from one thread at a time.
class Remuxer {
 public:
  /// Takes the bytes of the stream; false ends the writing.
  using Sink = std::function<bool(std::span<const std::uint8_t>)>;

  /// Writes the stream's header for the streams of `source`. Null when they cannot be written like this: pictures
  /// without timestamps, pictures that are decoded but not shown, or a codec that the format has no name for.
  static std::unique_ptr<Remuxer> make(MediaInput source, Sink sink);
  Remuxer(const Remuxer&) = delete;
  Remuxer& operator=(const Remuxer&) = delete;

  /// Writes all packets once more. False when the sink refused, nothing could be written, or the file cannot be read
  /// again.
  bool writePass();
  /// Whether the pass that was written last had a single picture and no sound.
  bool isStill() const { return picturesInPass_ == 1 && !sound_; }

 private:
  Remuxer(MediaInput source, Sink sink);
  bool lookAhead();
  bool writeHeader();
  /// The next packet of the pass, from memory or from the file; null at its end.
  Packet next();
  void keep(const AVPacket& packet);
  bool writePicture(AVPacket& packet);
  bool endPass();
  bool rewind();
  /// Converts a time of the pictures to samples of the sound; only for a file with sound.
  std::int64_t samples(std::int64_t pictureTime) const;

  MediaInput input_;
  Sink sink_;
  RemuxedTrack picture_;
  std::optional<RemuxedSound> sound_;
  IoContext io_;
  OutputContext output_;

  /// Packets that were read in search of the first picture.
  std::deque<Packet> ahead_;
  /// The packets of a whole pass, unless they are too large.
  std::vector<Packet> memory_;
  std::size_t memoryBytes_ = 0;
  bool inMemory_ = false;
  std::size_t nextInMemory_ = 0;

  /// In units of the picture's stream: the time of the first picture in the file, and in the current pass.
  std::int64_t firstPicture_ = AV_NOPTS_VALUE;
  std::int64_t passStart_ = 0;
  /// Where the current pass ends, as far as known, and how many pictures it has so far.
  std::int64_t passEnd_ = 0;
  int picturesInPass_ = 0;
  std::int64_t lastDuration_ = 0;
};

}  // namespace quilex
