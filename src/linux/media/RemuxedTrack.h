#pragma once

#include <cstdint>

#include "linux/media/Libav.h"

namespace quilex {

/// A stream of a file, and the stream of an output to which its packets go. Both contexts must outlive it.
class RemuxedTrack {
 public:
  explicit RemuxedTrack(AVStream* in) : in_(in) {}

  /// False when the output cannot have such a stream.
  bool addTo(AVFormatContext* output, AVFormatContext* input);
  /// Goes on with the same stream of the file after that was opened again.
  void setInput(AVStream* in) { in_ = in; }
  /// Writes a packet whose times are in units of the output. Moves them on where they would not increase.
  bool write(AVPacket& packet);

  const AVStream& in() const { return *in_; }
  const AVStream& out() const { return *out_; }
  /// In units of the output; AV_NOPTS_VALUE before the first packet.
  std::int64_t lastDecodingTime() const { return lastDecodingTime_; }

 private:
  AVStream* in_;
  AVStream* out_ = nullptr;
  AVFormatContext* output_ = nullptr;
  std::int64_t lastDecodingTime_ = AV_NOPTS_VALUE;
};

}  // namespace quilex
