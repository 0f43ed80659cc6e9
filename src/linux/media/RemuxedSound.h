#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

#include "linux/media/RemuxedTrack.h"

namespace quilex {

/// The sound of a file that is remuxed in passes. It is held back until it is known how long the pictures of the pass
/// last, and then cut there, to the sample. All times are in samples of the output.
class RemuxedSound {
 public:
  explicit RemuxedSound(AVStream* in);

  RemuxedTrack& track() { return track_; }
  /// Samples per second.
  int rate() const { return track_.in().codecpar->sample_rate; }
  /// Begins the next pass: the time `firstPicture` of the file becomes `start`.
  void beginPass(std::int64_t start, std::int64_t firstPicture);
  void add(Packet packet);
  /// Writes the held sound that ends by `until`, and more if too much is held. False when that fails.
  bool release(std::int64_t until);
  /// Whether the sound goes on for so long after `end` that it must not be cut there.
  bool outlasts(std::int64_t end) const;
  /// Where the sound of the pass ends.
  std::int64_t end() const { return end_; }
  /// Writes the rest of the pass, up to `end`. False when that fails.
  bool endPass(std::int64_t end);

 private:
  struct Held {
    Packet packet;
    std::int64_t start;
    std::int64_t length;
  };

  std::int64_t sampleCount(const AVPacket& packet);
  std::int64_t firstSample(const AVPacket& packet, std::int64_t stamped) const;
  bool write(Held& held, std::int64_t end);
  bool writeReset();

  RemuxedTrack track_;
  /// Set for Vorbis, where the samples of a packet depend on the packet before it.
  VorbisParser blocks_;
  bool isFirstPass_ = true;
  std::int64_t passStart_ = 0;
  /// What is added to the times of the file.
  std::int64_t shift_ = 0;
  /// Where the next packet of the pass begins; AV_NOPTS_VALUE before the first.
  std::int64_t nextSample_ = AV_NOPTS_VALUE;
  std::int64_t end_ = 0;
  std::deque<Held> held_;
  std::size_t heldBytes_ = 0;
};

}  // namespace quilex
