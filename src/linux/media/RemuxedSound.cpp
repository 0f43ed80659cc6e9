#include "linux/media/RemuxedSound.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/intreadwrite.h>
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace quilex {

namespace {

// How much sound is held back at most.
constexpr std::size_t kMostHeldPackets = 2000;
constexpr std::size_t kMostHeldBytes = std::size_t{4} * 1024 * 1024;
constexpr std::size_t kSkipSamplesBytes = 10;
// Divisors of a second. Containers round their timestamps by at most 1/50 s, while the number of samples is exact.
constexpr int kLargestRounding = 50;
// Nobody notices an offset of 1/100 s between sound and pictures.
constexpr int kLeastOffset = 100;
// Sound that outlasts the pictures by more than 1/2 s is not cut.
constexpr int kLongestCut = 2;

// How many samples at its start and its end a packet asks the decoder to skip.
std::pair<std::int64_t, std::int64_t> skippedSamples(const AVPacket& packet) {
  std::size_t size = 0;
  const std::uint8_t* data = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
  if (data == nullptr || size < kSkipSamplesBytes) {
    return {0, 0};
  }
  return {AV_RL32(data), AV_RL32(data + 4)};
}

void skipSamples(AVPacket& packet, std::int64_t atStart, std::int64_t atEnd) {
  std::size_t size = 0;
  std::uint8_t* data = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
  if (data == nullptr && (atStart > 0 || atEnd > 0)) {
    size = kSkipSamplesBytes;
    data = av_packet_new_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, size);
    if (data != nullptr) {
      std::fill_n(data, size, std::uint8_t{0});
    }
  }
  if (data != nullptr && size >= kSkipSamplesBytes) {
    AV_WL32(data, static_cast<std::uint32_t>(std::max<std::int64_t>(atStart, 0)));
    AV_WL32(data + 4, static_cast<std::uint32_t>(std::max<std::int64_t>(atEnd, 0)));
  }
}

}  // namespace

RemuxedSound::RemuxedSound(AVStream* in) : track_(in) {
  const AVCodecParameters& parameters = *in->codecpar;
  if (parameters.codec_id == AV_CODEC_ID_VORBIS) {
    blocks_.reset(av_vorbis_parse_init(parameters.extradata, parameters.extradata_size));
  }
}

void RemuxedSound::beginPass(std::int64_t start, std::int64_t firstPicture) {
  passStart_ = start;
  shift_ = start - firstPicture;
  nextSample_ = AV_NOPTS_VALUE;
  end_ = 0;
}

std::int64_t RemuxedSound::sampleCount(const AVPacket& packet) {
  int exact = av_get_audio_frame_duration2(track_.in().codecpar, packet.size);
  if (blocks_) {
    exact = av_vorbis_parse_frame(blocks_.get(), packet.data, packet.size);
  }
  return exact > 0 ? exact : av_rescale_q(packet.duration, track_.in().time_base, {1, rate()});
}

void RemuxedSound::add(Packet packet) {
  const bool isFirst = nextSample_ == AV_NOPTS_VALUE;
  std::int64_t length = sampleCount(*packet);
  std::int64_t start = nextSample_;
  if (packet->pts != AV_NOPTS_VALUE) {
    const std::int64_t stamped = av_rescale_q(packet->pts, track_.in().time_base, {1, rate()}) + shift_;
    if (isFirst) {
      start = firstSample(*packet, stamped);
    } else if (std::abs(stamped - start) > rate() / kLargestRounding) {
      start = stamped;
    }
  }
  if (start == AV_NOPTS_VALUE || length <= 0) {
    return;
  }
  nextSample_ = start + length;
  if (blocks_ && isFirst) {
    // A Vorbis decoder needs a packet and the one before it to make samples. The first packet of the file yields none
    // in the first pass, and in later passes a mixture with the end of the pass before, which must not be heard.
    nextSample_ = start;
    start -= length;
    if (isFirstPass_) {
      length = 0;
    }
  }
  end_ = std::max(end_, nextSample_ - skippedSamples(*packet).second);
  heldBytes_ += static_cast<std::size_t>(packet->size);
  held_.push_back({std::move(packet), start, length});
}

// Where the first packet of a pass begins. The decoder skips its samples before the first audible one.
std::int64_t RemuxedSound::firstSample(const AVPacket& packet, std::int64_t stamped) const {
  const std::int64_t stated = skippedSamples(packet).first;
  const std::int64_t silent = stated > 0 ? stated : track_.in().codecpar->initial_padding;
  // Sound that begins almost with the pictures is moved to begin with them, so that nothing is missing at the seam.
  const bool isMeantToBegin = std::abs(stamped + silent - passStart_) <= rate() / kLeastOffset;
  return isMeantToBegin ? passStart_ - silent : stamped;
}

bool RemuxedSound::release(std::int64_t until) {
  while (!held_.empty()) {
    Held& first = held_.front();
    const bool isTooMuch = heldBytes_ > kMostHeldBytes || held_.size() > kMostHeldPackets;
    if (first.start + first.length > until && !isTooMuch) {
      break;
    }
    if (!write(first, INT64_MAX)) {
      return false;
    }
    heldBytes_ -= static_cast<std::size_t>(first.packet->size);
    held_.pop_front();
  }
  return true;
}

// Writes a packet so that only its samples between the start of the pass and `end` are heard.
bool RemuxedSound::write(Held& held, std::int64_t end) {
  const std::int64_t after = held.start + held.length;
  const auto [atStart, atEnd] = skippedSamples(*held.packet);
  // Sound of up to a second before the pass is decoded and skipped: the first audible samples may need it.
  if (held.start >= end || after < passStart_ - rate()) {
    return true;
  }
  skipSamples(*held.packet, std::clamp(passStart_ - held.start, atStart, std::max(atStart, held.length)),
              std::clamp(after - end, atEnd, std::max(atEnd, held.length)));
  const AVRational samples{1, rate()};
  held.packet->pts = av_rescale_q(held.start, samples, track_.out().time_base);
  held.packet->dts = held.packet->pts;
  held.packet->duration = av_rescale_q(held.length, samples, track_.out().time_base);
  return track_.write(*held.packet);
}

bool RemuxedSound::outlasts(std::int64_t end) const {
  return !held_.empty() && end_ - end > rate() / kLongestCut;
}

bool RemuxedSound::endPass(std::int64_t end) {
  isFirstPass_ = false;
  for (Held& each : held_) {
    if (!write(each, end)) {
      return false;
    }
  }
  held_.clear();
  heldBytes_ = 0;
  return track_.in().codecpar->codec_id != AV_CODEC_ID_OPUS || writeReset();
}

// Writes two packets that bring an Opus decoder back to its first state. It predicts each packet from the one before,
// unless that one is of the other of its two coders (RFC 6716, section 4.5.2). So there is one packet of each coder.
// Their sound is skipped.
bool RemuxedSound::writeReset() {
  constexpr std::array<std::array<std::uint8_t, 4>, 2> kPackets{{{0xf8, 0xff, 0xfe, 0}, {0x08, 0, 0, 0}}};
  for (const auto& bytes : kPackets) {
    const Packet packet(av_packet_alloc());
    if (!packet || av_new_packet(packet.get(), static_cast<int>(bytes.size())) < 0) {
      return false;
    }
    std::ranges::copy(bytes, packet->data);
    skipSamples(*packet, rate() / 50, 0);
    packet->flags |= AV_PKT_FLAG_KEY;
    packet->pts = packet->dts = track_.lastDecodingTime();
    if (!track_.write(*packet)) {
      return false;
    }
  }
  return true;
}

}  // namespace quilex
