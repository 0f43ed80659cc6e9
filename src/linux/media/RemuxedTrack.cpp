#include "linux/media/RemuxedTrack.h"

#include <algorithm>

namespace quilex {

bool RemuxedTrack::addTo(AVFormatContext* output, AVFormatContext* input) {
  output_ = output;
  out_ = avformat_new_stream(output_, nullptr);
  if (out_ == nullptr || avcodec_parameters_copy(out_->codecpar, in_->codecpar) < 0) {
    return false;
  }
  out_->codecpar->codec_tag = 0;
  const bool isSound = in_->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
  out_->time_base = isSound ? AVRational{1, in_->codecpar->sample_rate} : in_->time_base;
  out_->avg_frame_rate = in_->avg_frame_rate;
  out_->r_frame_rate = in_->r_frame_rate;
  out_->sample_aspect_ratio = av_guess_sample_aspect_ratio(input, in_, nullptr);
  out_->codecpar->sample_aspect_ratio = out_->sample_aspect_ratio;
  return true;
}

bool RemuxedTrack::write(AVPacket& packet) {
  if (lastDecodingTime_ != AV_NOPTS_VALUE) {
    packet.dts = std::max(packet.dts, lastDecodingTime_ + 1);
  }
  packet.pts = std::max(packet.pts, packet.dts);
  lastDecodingTime_ = packet.dts;
  packet.stream_index = out_->index;
  packet.pos = -1;
  return av_write_frame(output_, &packet) >= 0;
}

}  // namespace quilex
