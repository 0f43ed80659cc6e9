#include "linux/media/Remuxer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace quilex {

namespace {

constexpr int kWriteBufferBytes = 64 * 1024;
// The file of a clip whose packets are no larger than this is read only once.
constexpr std::size_t kMostMemoryBytes = std::size_t{1024} * 1024;
// How far the first picture is searched for.
constexpr std::size_t kMostPacketsAhead = 2000;
// Timestamps start here, since NUT has no negative ones and sound may begin before the pictures.
constexpr int kLeadSeconds = 2;
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

}  // namespace

Remuxer::Remuxer(MediaInput source, Sink sink)
    : input_(std::move(source)), sink_(std::move(sink)), picture_(input_.picture()) {
  if (input_.sound() != nullptr) {
    sound_.emplace(input_.sound());
  }
}

std::unique_ptr<Remuxer> Remuxer::make(MediaInput source, Sink sink) {
  // Elementary streams have no timestamps of their own.
  if ((source.context()->iformat->flags & AVFMT_NOTIMESTAMPS) != 0) {
    return nullptr;
  }
  std::unique_ptr<Remuxer> remuxer(new Remuxer(std::move(source), std::move(sink)));
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
    if (read.stream_index != picture_.in().index) {
      continue;
    }
    if (!isShown(read) || read.pts == AV_NOPTS_VALUE) {
      return false;
    }
    if ((read.flags & AV_PKT_FLAG_KEY) != 0) {
      firstPicture_ = read.pts;
      passStart_ = av_rescale_q_rnd(kLeadSeconds, {1, 1}, picture_.in().time_base, AV_ROUND_UP);
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
  io_ = makeIoContext(kWriteBufferBytes, true, &sink_, nullptr, writeBytes, nullptr);
  context->pb = io_.get();
  if (!io_ || !picture_.addTo(context, input_.context()) ||
      (sound_ && !sound_->track().addTo(context, input_.context()))) {
    return false;
  }
  // Only the fourth version of the format can say which samples are skipped.
  context->strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
  // Each packet is handed over at once, and no record is kept of them.
  context->flags |= AVFMT_FLAG_FLUSH_PACKETS;
  Dictionary options;
  options.set("syncpoints", "none");
  options.set("write_index", "0");
  return avformat_write_header(context, options.get()) >= 0;
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
  if (sound_) {
    sound_->beginPass(samples(passStart_), samples(firstPicture_));
  }
  while (Packet packet = next()) {
    bool written = true;
    if (packet->stream_index == picture_.in().index) {
      written = writePicture(*packet);
    } else if (sound_ && packet->stream_index == sound_->track().in().index) {
      sound_->add(std::move(packet));
      written = sound_->release(samples(passEnd_));
    }
    if (!written) {
      return false;
    }
  }
  return picturesInPass_ > 0 && endPass() && rewind();
}

bool Remuxer::writePicture(AVPacket& packet) {
  if (packet.pts == AV_NOPTS_VALUE) {
    packet.pts = packet.dts;
  }
  // Pictures to be shown before the first key frame depend on others that are not in the file.
  if (packet.pts == AV_NOPTS_VALUE || packet.pts < firstPicture_ || !isShown(packet)) {
    return true;
  }
  const std::int64_t shift = passStart_ - firstPicture_;
  const std::int64_t start = packet.pts + shift;
  if (packet.duration > 0) {
    lastDuration_ = packet.duration;
  } else if (start > passEnd_) {
    lastDuration_ = start - passEnd_;
  }
  passEnd_ = std::max(passEnd_, start + lastDuration_);
  ++picturesInPass_;
  const AVRational from = picture_.in().time_base;
  const AVRational to = picture_.out().time_base;
  packet.pts = av_rescale_q(start, from, to);
  packet.dts = packet.dts == AV_NOPTS_VALUE ? packet.pts : av_rescale_q(packet.dts + shift, from, to);
  packet.duration = av_rescale_q(packet.duration, from, to);
  return picture_.write(packet) && (!sound_ || sound_->release(samples(passEnd_)));
}

std::int64_t Remuxer::samples(std::int64_t pictureTime) const {
  return av_rescale_q(pictureTime, picture_.in().time_base, {1, sound_->rate()});
}

bool Remuxer::endPass() {
  // The duration of the last picture is rounded, as all timestamps are. At a constant rate the number of pictures gives
  // the length of the pass exactly.
  const AVRational rate = picture_.in().avg_frame_rate;
  if (rate.num > 0 && rate.den > 0) {
    const std::int64_t whole = av_rescale_q(picturesInPass_, av_inv_q(rate), picture_.in().time_base);
    if (std::abs(whole - (passEnd_ - passStart_)) <= 1) {
      passEnd_ = passStart_ + whole;
    }
  }
  if (sound_ && sound_->outlasts(samples(passEnd_))) {
    passEnd_ = av_rescale_q_rnd(sound_->end(), {1, sound_->rate()}, picture_.in().time_base, AV_ROUND_UP);
  }
  if (sound_ && !sound_->endPass(samples(passEnd_))) {
    return false;
  }
  passStart_ = passEnd_;
  return true;
}

bool Remuxer::rewind() {
  if (inMemory_ || !memory_.empty()) {
    inMemory_ = true;
    nextInMemory_ = 0;
    return true;
  }
  auto again = input_.reopen();
  if (!again || (sound_ && again->sound() == nullptr)) {
    return false;
  }
  input_ = *std::move(again);
  picture_.setInput(input_.picture());
  if (sound_) {
    sound_->track().setInput(input_.sound());
  }
  return true;
}

}  // namespace quilex
