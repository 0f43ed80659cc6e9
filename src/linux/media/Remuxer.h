#pragma once

extern "C" {
#include <libavcodec/vorbis_parser.h>
}

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "linux/media/MediaInput.h"

namespace quilex {

/// Writes a video file as one stream that can go on for ever: the packets of pass after pass, with timestamps that
/// continue, so that a decoder never stops between the last frame of one pass and the first of the next. Nothing is
/// decoded. The stream is in the NUT format, whose timestamps are exact in the file's own units
/// (FFmpeg's doc/nut.texi and libavformat/nutenc.c).
///
/// A pass lasts as long as its pictures; sound that is longer by less than half a second is cut, to the sample, and
/// more sound than that prolongs the pass. For use from one thread at a time.
class Remuxer {
 public:
  /// Takes the bytes of the stream; false ends the writing.
  using Sink = std::function<bool(std::span<const std::uint8_t>)>;

  /// Writes the stream's header for the streams of `source`. Null when they cannot be written like this: pictures
  /// without timestamps, pictures that are decoded but not shown, or a codec that the format has no name for.
  static std::unique_ptr<Remuxer> make(MediaInput source, Sink takeBytes);
  ~Remuxer();
  Remuxer(const Remuxer&) = delete;
  Remuxer& operator=(const Remuxer&) = delete;

  /// Writes all packets once more. False when the sink refused, or there is nothing that could be written.
  bool writePass();
  /// Whether the pass that was written last had a single picture and no sound.
  bool isStill() const { return picturesInPass_ == 1 && sound_.in == nullptr; }

 private:
  struct FreeBlocks {
    void operator()(AVVorbisParseContext* context) const;
  };
  struct CloseOutput {
    void operator()(AVFormatContext* context) const;
  };
  /// One stream on its way; times are in units of the input stream's time base.
  struct Track {
    AVStream* in = nullptr;
    AVStream* out = nullptr;
    std::int64_t lastDecodingTime = AV_NOPTS_VALUE;  // in units of the output
  };

  /// Sound that is held back until it is known whether the pictures last as long; times in samples.
  struct Held {
    Packet packet;
    std::int64_t start;
    std::int64_t length;
  };

  Remuxer(MediaInput source, Sink takeBytes);
  bool lookAhead();
  bool writeHeader();
  bool addTrack(Track& track, AVStream* in);
  /// The next packet of the pass, from memory or from the file; null at its end.
  Packet next();
  bool rewind();
  void keep(const AVPacket& packet);
  bool handlePicture(Packet packet);
  void measureSound(Packet packet);
  std::int64_t sampleCount(const AVPacket& packet);
  std::int64_t firstSample(const AVPacket& packet, std::int64_t stamped) const;
  bool releaseSound(std::int64_t until);
  bool writeSound(Held& held, std::int64_t end);
  bool writeReset();
  bool endPass();
  bool write(Track& track, AVPacket& packet);

  std::int64_t soundTime(std::int64_t pictureTime) const;

  MediaInput input_;
  Sink sink_;
  Track picture_;
  Track sound_;
  std::unique_ptr<AVFormatContext, CloseOutput> output_;

  /// Packets that were read to look at them, then those of a whole pass where they are few.
  std::deque<Packet> ahead_;
  std::vector<Packet> memory_;
  std::size_t memoryBytes_ = 0;
  bool inMemory_ = false;
  std::size_t nextInMemory_ = 0;

  /// Where the first picture of the file stands, and where it stands in the pass that is written.
  std::int64_t firstPicture_ = AV_NOPTS_VALUE;
  std::int64_t passStart_ = 0;
  /// Of the pass that is written: its end as far as known, and how many pictures it has so far.
  std::int64_t passEnd_ = 0;
  int picturesInPass_ = 0;
  std::int64_t lastDuration_ = 0;
  std::deque<Held> heldSound_;
  std::size_t heldBytes_ = 0;
  std::int64_t nextSample_ = AV_NOPTS_VALUE;
  /// Vorbis packets hold as many samples as they and their predecessors say.
  std::unique_ptr<AVVorbisParseContext, FreeBlocks> blocks_;
  bool isInLaterPass_ = false;
  std::int64_t soundEnd_ = 0;
};

}  // namespace quilex
