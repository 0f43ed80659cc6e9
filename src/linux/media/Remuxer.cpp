#include "linux/media/Remuxer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/intreadwrite.h>
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <array>
#include <utility>

namespace quilex {

namespace {

constexpr int kWriteBufferBytes = 64 * 1024;
/// A clip whose packets take no more than this is read from its file once.
constexpr std::size_t kMostMemoryBytes = std::size_t{1024} * 1024;
/// How much is read in search of the first picture, and how much sound is held back.
constexpr std::size_t kMostPacketsAhead = 2000;
constexpr std::size_t kMostHeldBytes = std::size_t{4} * 1024 * 1024;
/// Timestamps start here, since NUT has no negative ones and sound may begin before the pictures.
constexpr int kLeadSeconds = 2;
constexpr std::size_t kSkipSamplesBytes = 10;
/// Shares of a second. Containers round their timestamps by no more than the first, while the counted samples are
/// exact; the second is an offset between sound and pictures that nobody notices.
constexpr int kLargestRounding = 50;
constexpr int kLeastOffset = 100;
#if LIBAVFORMAT_VERSION_MAJOR >= 61
using WrittenBytes = const std::uint8_t;
#else
using WrittenBytes = std::uint8_t;
#endif

int writeBytes(void* sink, WrittenBytes* bytes, int size) {
  const bool taken = (*static_cast<Remuxer::Sink*>(sink))({bytes, static_cast<std::size_t>(size)});
  return taken ? size : AVERROR_EXIT;
}

bool isShown(const AVPacket& packet) {
  return (packet.flags & AV_PKT_FLAG_DISCARD) == 0;
}

// How a packet asks the decoder to skip samples at its start and its end.
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

void Remuxer::FreeBlocks::operator()(AVVorbisParseContext* context) const {
  av_vorbis_parse_free(&context);
}

void Remuxer::CloseOutput::operator()(AVFormatContext* context) const {
  if (context->pb != nullptr) {
    av_freep(&context->pb->buffer);
    avio_context_free(&context->pb);
  }
  avformat_free_context(context);
}

Remuxer::Remuxer(MediaInput source, Sink takeBytes) : input_(std::move(source)), sink_(std::move(takeBytes)) {}

Remuxer::~Remuxer() = default;

std::unique_ptr<Remuxer> Remuxer::make(MediaInput source, Sink takeBytes) {
  // Elementary streams have no timestamps of their own.
  if ((source.context()->iformat->flags & AVFMT_NOTIMESTAMPS) != 0) {
    return nullptr;
  }
  std::unique_ptr<Remuxer> remuxer(new Remuxer(std::move(source), std::move(takeBytes)));
  remuxer->picture_.in = remuxer->input_.picture();
  remuxer->sound_.in = remuxer->input_.sound();
  if (remuxer->sound_.in != nullptr && remuxer->sound_.in->codecpar->codec_id == AV_CODEC_ID_VORBIS) {
    const AVCodecParameters* parameters = remuxer->sound_.in->codecpar;
    remuxer->blocks_.reset(av_vorbis_parse_init(parameters->extradata, parameters->extradata_size));
  }
  return remuxer->lookAhead() && remuxer->writeHeader() ? std::move(remuxer) : nullptr;
}

// Finds the first picture.
bool Remuxer::lookAhead() {
  while (ahead_.size() < kMostPacketsAhead) {
    Packet packet(av_packet_alloc());
    if (!packet || av_read_frame(input_.context(), packet.get()) < 0) {
      return false;
    }
    const AVPacket& read = *packet;
    ahead_.push_back(std::move(packet));
    if (read.stream_index != picture_.in->index) {
      continue;
    }
    if (!isShown(read) || read.pts == AV_NOPTS_VALUE) {
      return false;
    }
    if ((read.flags & AV_PKT_FLAG_KEY) != 0) {
      firstPicture_ = read.pts;
      passStart_ = av_rescale_q_rnd(kLeadSeconds, {1, 1}, picture_.in->time_base, AV_ROUND_UP);
      passEnd_ = passStart_;
      return true;
    }
  }
  return false;
}

bool Remuxer::writeHeader() {
  AVFormatContext* context = nullptr;
  if (avformat_alloc_output_context2(&context, nullptr, "nut", nullptr) < 0) {
    return false;
  }
  output_.reset(context);
  auto* buffer = static_cast<unsigned char*>(av_malloc(kWriteBufferBytes));
  context->pb = avio_alloc_context(buffer, kWriteBufferBytes, 1, &sink_, nullptr, writeBytes, nullptr);
  if (context->pb == nullptr || !addTrack(picture_, input_.picture()) ||
      (sound_.in != nullptr && !addTrack(sound_, input_.sound()))) {
    return false;
  }
  // Only its fourth version carries the samples that are to be skipped. Each packet is handed over at once; nothing is
  // kept of those that were.
  context->strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
  context->flags |= AVFMT_FLAG_FLUSH_PACKETS;
  AVDictionary* options = nullptr;
  av_dict_set(&options, "syncpoints", "none", 0);
  av_dict_set(&options, "write_index", "0", 0);
  const int result = avformat_write_header(context, &options);
  av_dict_free(&options);
  return result >= 0;
}

bool Remuxer::addTrack(Track& track, AVStream* in) {
  AVStream* out = avformat_new_stream(output_.get(), nullptr);
  if (out == nullptr || avcodec_parameters_copy(out->codecpar, in->codecpar) < 0) {
    return false;
  }
  out->codecpar->codec_tag = 0;
  const bool isSound = in->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
  out->time_base = isSound ? AVRational{1, in->codecpar->sample_rate} : in->time_base;
  out->avg_frame_rate = in->avg_frame_rate;
  out->r_frame_rate = in->r_frame_rate;
  out->sample_aspect_ratio = av_guess_sample_aspect_ratio(input_.context(), in, nullptr);
  out->codecpar->sample_aspect_ratio = out->sample_aspect_ratio;
  track.in = in;
  track.out = out;
  return true;
}

Packet Remuxer::next() {
  if (inMemory_) {
    return nextInMemory_ < memory_.size() ? Packet(av_packet_clone(memory_[nextInMemory_++].get())) : nullptr;
  }
  Packet packet;
  if (!ahead_.empty()) {
    packet = std::move(ahead_.front());
    ahead_.pop_front();
  } else {
    packet.reset(av_packet_alloc());
    if (!packet || av_read_frame(input_.context(), packet.get()) < 0) {
      return nullptr;
    }
  }
  keep(*packet);
  return packet;
}

void Remuxer::keep(const AVPacket& packet) {
  memoryBytes_ += static_cast<std::size_t>(packet.size) + sizeof packet;
  if (memoryBytes_ <= kMostMemoryBytes) {
    memory_.emplace_back(av_packet_clone(&packet));
  } else {
    memory_.clear();
  }
}

bool Remuxer::writePass() {
  picturesInPass_ = 0;
  nextSample_ = AV_NOPTS_VALUE;
  soundEnd_ = 0;
  while (Packet packet = next()) {
    bool written = true;
    if (packet->stream_index == picture_.in->index) {
      written = handlePicture(std::move(packet));
    } else if (sound_.in != nullptr && packet->stream_index == sound_.in->index) {
      measureSound(std::move(packet));
      written = releaseSound(soundTime(passEnd_));
    }
    if (!written) {
      return false;
    }
  }
  isInLaterPass_ = true;
  return picturesInPass_ > 0 && endPass() && rewind();
}

bool Remuxer::handlePicture(Packet packet) {
  if (packet->pts == AV_NOPTS_VALUE) {
    packet->pts = packet->dts;
  }
  // Pictures before the first one need others that are not there.
  if (packet->pts == AV_NOPTS_VALUE || packet->pts < firstPicture_ || !isShown(*packet)) {
    return true;
  }
  const std::int64_t shift = passStart_ - firstPicture_;
  const std::int64_t start = packet->pts + shift;
  if (packet->duration > 0) {
    lastDuration_ = packet->duration;
  } else if (start > passEnd_) {
    lastDuration_ = start - passEnd_;
  }
  passEnd_ = std::max(passEnd_, start + lastDuration_);
  ++picturesInPass_;
  const AVRational from = picture_.in->time_base;
  const AVRational to = picture_.out->time_base;
  packet->pts = av_rescale_q(start, from, to);
  packet->dts = packet->dts == AV_NOPTS_VALUE ? packet->pts : av_rescale_q(packet->dts + shift, from, to);
  packet->duration = av_rescale_q(packet->duration, from, to);
  return write(picture_, *packet) && releaseSound(soundTime(passEnd_));
}

// In samples, as all times of the sound.
std::int64_t Remuxer::sampleCount(const AVPacket& packet) {
  const AVStream& stream = *sound_.in;
  int exact = av_get_audio_frame_duration2(stream.codecpar, packet.size);
  if (blocks_) {
    exact = av_vorbis_parse_frame(blocks_.get(), packet.data, packet.size);
  }
  return exact > 0 ? exact : av_rescale_q(packet.duration, stream.time_base, {1, stream.codecpar->sample_rate});
}

std::int64_t Remuxer::soundTime(std::int64_t pictureTime) const {
  return sound_.in == nullptr
             ? 0
             : av_rescale_q(pictureTime, picture_.in->time_base, {1, sound_.in->codecpar->sample_rate});
}

void Remuxer::measureSound(Packet packet) {
  const int rate = sound_.in->codecpar->sample_rate;
  const bool isFirst = nextSample_ == AV_NOPTS_VALUE;
  std::int64_t length = sampleCount(*packet);
  std::int64_t start = nextSample_;
  if (packet->pts != AV_NOPTS_VALUE) {
    const std::int64_t stamped =
        av_rescale_q(packet->pts, sound_.in->time_base, {1, rate}) - soundTime(firstPicture_) + soundTime(passStart_);
    if (isFirst) {
      start = firstSample(*packet, stamped);
    } else if (std::abs(stamped - start) > rate / kLargestRounding) {
      start = stamped;
    }
  }
  if (start == AV_NOPTS_VALUE || length <= 0) {
    return;
  }
  nextSample_ = start + length;
  if (blocks_ && isFirst) {
    // A decoder makes samples of this packet and the one before it: none at all in the first pass, and none that
    // belong to the file later.
    nextSample_ = start;
    start -= length;
    if (!isInLaterPass_) {
      length = 0;
    }
  }
  soundEnd_ = std::max(soundEnd_, nextSample_ - skippedSamples(*packet).second);
  heldBytes_ += static_cast<std::size_t>(packet->size);
  heldSound_.push_back({std::move(packet), start, length});
}

// Where the first packet of a pass begins: its samples before the first audible one are the decoder's to skip.
std::int64_t Remuxer::firstSample(const AVPacket& packet, std::int64_t stamped) const {
  const AVCodecParameters& parameters = *sound_.in->codecpar;
  const std::int64_t stated = skippedSamples(packet).first;
  const std::int64_t silent = stated > 0 ? stated : parameters.initial_padding;
  const std::int64_t begin = soundTime(passStart_);
  // Sound that all but begins with the pictures is taken to do so, so that nothing is missing at the seam.
  const bool isMeantToBegin = std::abs(stamped + silent - begin) <= parameters.sample_rate / kLeastOffset;
  return isMeantToBegin ? begin - silent : stamped;
}

// Writes the held sound that ends before `until`, or that is too much to be held.
bool Remuxer::releaseSound(std::int64_t until) {
  while (!heldSound_.empty()) {
    Held& first = heldSound_.front();
    const bool isTooMuch = heldBytes_ > kMostHeldBytes || heldSound_.size() > kMostPacketsAhead;
    if (first.start + first.length > until && !isTooMuch) {
      break;
    }
    if (!writeSound(first, INT64_MAX)) {
      return false;
    }
    heldBytes_ -= static_cast<std::size_t>(first.packet->size);
    heldSound_.pop_front();
  }
  return true;
}

// Writes what lies between the start of the pass and `end`.
bool Remuxer::writeSound(Held& held, std::int64_t end) {
  const std::int64_t begin = soundTime(passStart_);
  const std::int64_t after = held.start + held.length;
  const auto [atStart, atEnd] = skippedSamples(*held.packet);
  // What is skipped is decoded all the same: the first audible samples may need it.
  if (held.start >= end || after < begin - sound_.in->codecpar->sample_rate) {
    return true;
  }
  skipSamples(*held.packet, std::clamp(begin - held.start, atStart, std::max(atStart, held.length)),
              std::clamp(after - end, atEnd, std::max(atEnd, held.length)));
  const AVRational samples{1, sound_.in->codecpar->sample_rate};
  held.packet->pts = av_rescale_q(held.start, samples, sound_.out->time_base);
  held.packet->dts = held.packet->pts;
  held.packet->duration = av_rescale_q(held.length, samples, sound_.out->time_base);
  return write(sound_, *held.packet);
}

// Writes two packets that bring an Opus decoder back to its first state. It predicts each packet from the one before,
// except when a packet comes from the other of its two coders: then it starts afresh (RFC 6716, section 4.5.2). So
// there is one packet of each coder. Their sound is skipped.
bool Remuxer::writeReset() {
  constexpr std::array<std::array<std::uint8_t, 4>, 2> kPackets{{{0xf8, 0xff, 0xfe, 0}, {0x08, 0, 0, 0}}};
  for (const auto& bytes : kPackets) {
    const Packet packet(av_packet_alloc());
    if (!packet || av_new_packet(packet.get(), static_cast<int>(bytes.size())) < 0) {
      return false;
    }
    std::copy(bytes.begin(), bytes.end(), packet->data);
    skipSamples(*packet, sound_.in->codecpar->sample_rate / 50, 0);
    packet->flags |= AV_PKT_FLAG_KEY;
    packet->pts = packet->dts = sound_.lastDecodingTime;
    if (!write(sound_, *packet)) {
      return false;
    }
  }
  return true;
}

bool Remuxer::endPass() {
  // The last picture's duration is rounded as all timestamps are; at a constant rate the whole is known better.
  const AVRational rate = picture_.in->avg_frame_rate;
  if (rate.num > 0 && rate.den > 0) {
    const std::int64_t whole = av_rescale_q(picturesInPass_, av_inv_q(rate), picture_.in->time_base);
    if (std::abs(whole - (passEnd_ - passStart_)) <= 1) {
      passEnd_ = passStart_ + whole;
    }
  }
  if (sound_.in != nullptr && !heldSound_.empty()) {
    const int samples = sound_.in->codecpar->sample_rate;
    if (soundEnd_ - soundTime(passEnd_) > samples / 2) {
      passEnd_ = av_rescale_q_rnd(soundEnd_, {1, samples}, picture_.in->time_base, AV_ROUND_UP);
    }
    for (Held& each : heldSound_) {
      if (!writeSound(each, soundTime(passEnd_))) {
        return false;
      }
    }
  }
  heldSound_.clear();
  heldBytes_ = 0;
  passStart_ = passEnd_;
  return sound_.in == nullptr || sound_.in->codecpar->codec_id != AV_CODEC_ID_OPUS || writeReset();
}

bool Remuxer::rewind() {
  if (inMemory_ || !memory_.empty()) {
    inMemory_ = true;
    nextInMemory_ = 0;
    return true;
  }
  auto again = input_.reopen();
  if (std::holds_alternative<MediaInput::Error>(again)) {
    return false;
  }
  input_ = std::get<MediaInput>(std::move(again));
  picture_.in = input_.picture();
  sound_.in = sound_.out != nullptr ? input_.sound() : nullptr;
  return sound_.out == nullptr || sound_.in != nullptr;
}

bool Remuxer::write(Track& track, AVPacket& packet) {
  if (track.lastDecodingTime != AV_NOPTS_VALUE) {
    packet.dts = std::max(packet.dts, track.lastDecodingTime + 1);
  }
  packet.pts = std::max(packet.pts, packet.dts);
  track.lastDecodingTime = packet.dts;
  packet.stream_index = track.out->index;
  packet.pos = -1;
  return av_write_frame(output_.get(), &packet) >= 0;
}

}  // namespace quilex
