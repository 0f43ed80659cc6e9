#include "companion/MediaFile.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libswscale/swscale.h>
}

#include <QBuffer>
#include <QImage>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <utility>

#include "library/MediaFormats.h"

namespace quilex {

namespace {

// AV_TIME_BASE_Q is a C compound literal.
constexpr AVRational kTimeBase{1, AV_TIME_BASE};
constexpr int kCoverWidth = 640;
constexpr int kCoverQuality = 85;
constexpr int kSmallestHighDefinition = 720;
// The cover is taken after a fade-in, but not so far into the video that reaching it takes long.
constexpr double kCoverShare = 0.1;
constexpr double kCoverLatestSecond = 10;
constexpr int kCoverMostFrames = 300;
constexpr const char* kUndecodable = "is damaged: its pictures cannot be decoded";

struct Free {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(SwsContext* context) const { sws_freeContext(context); }
};
template <typename Handle>
using Owned = std::unique_ptr<Handle, Free>;

// For files that do not state their duration. Reads the whole file.
std::int64_t countFrames(const MediaInput& input) {
  const Packet packet(av_packet_alloc());
  std::int64_t count = 0;
  while (packet && av_read_frame(input.context(), packet.get()) >= 0) {
    count += packet->stream_index == input.picture()->index ? 1 : 0;
    av_packet_unref(packet.get());
  }
  return count;
}

/// Decodes the frames of one stream from the input's current position.
class FrameReader {
 public:
  FrameReader(const MediaInput& media, const MediaInput::Interrupted& interrupted)
      : interrupted_(interrupted), input_(media.context()), stream_(media.picture()->index) {
    const AVCodecParameters* parameters = media.picture()->codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters->codec_id);
    decoder_.reset(avcodec_alloc_context3(codec));
    if (decoder_) {
      decoder_->thread_count = 0;
      decoder_->max_pixels = kMostPixels;
      opened_ = avcodec_parameters_to_context(decoder_.get(), parameters) >= 0 &&
                avcodec_open2(decoder_.get(), codec, nullptr) >= 0;
    }
  }

  /// The next frame, valid until the next call; null at the end.
  const AVFrame* next() {
    while (opened_ && frame_ && packet_ && !interrupted_()) {
      const int received = avcodec_receive_frame(decoder_.get(), frame_.get());
      if (received == 0) {
        return frame_.get();
      }
      // A frame that cannot be decoded is skipped.
      if (received == AVERROR_EOF || !feed()) {
        break;
      }
    }
    return nullptr;
  }

 private:
  bool feed() {
    while (av_read_frame(input_, packet_.get()) >= 0) {
      const bool wanted = packet_->stream_index == stream_;
      const int sent = wanted ? avcodec_send_packet(decoder_.get(), packet_.get()) : AVERROR(EAGAIN);
      av_packet_unref(packet_.get());
      if (sent >= 0) {
        return true;
      }
    }
    return avcodec_send_packet(decoder_.get(), nullptr) >= 0;
  }

  const MediaInput::Interrupted& interrupted_;
  AVFormatContext* input_;
  int stream_;
  Owned<AVCodecContext> decoder_;
  Packet packet_{av_packet_alloc()};
  Owned<AVFrame> frame_{av_frame_alloc()};
  bool opened_ = false;
};

// The frame at that many seconds from the beginning, or the last one before; null if none can be decoded.
Owned<AVFrame> frameAt(const MediaInput& media, double seconds, const MediaInput::Interrupted& interrupted) {
  AVFormatContext* input = media.context();
  const auto start = input->start_time != AV_NOPTS_VALUE ? input->start_time : 0;
  const auto target = start + std::llround(seconds * AV_TIME_BASE);
  if (seconds > 0) {
    av_seek_frame(input, -1, target, AVSEEK_FLAG_BACKWARD);
  }
  FrameReader frames(media, interrupted);
  Owned<AVFrame> latest;
  for (int count = 0; count < kCoverMostFrames; ++count) {
    const AVFrame* frame = frames.next();
    if (frame == nullptr) {
      break;
    }
    latest.reset(av_frame_clone(frame));
    const auto time = frame->best_effort_timestamp;
    if (time == AV_NOPTS_VALUE || av_compare_ts(time, media.picture()->time_base, target, kTimeBase) >= 0) {
      break;
    }
  }
  return latest;
}

QImage scaled(const AVFrame& frame, AVRational pixelShape, bool quarterTurn) {
  const double stretch = pixelShape.num > 0 && pixelShape.den > 0 ? av_q2d(pixelShape) : 1;
  const double fullWidth = frame.width * stretch;
  const double shownWidth = quarterTurn ? frame.height : fullWidth;
  const double scale = std::min(1.0, kCoverWidth / shownWidth);
  const auto extent = [&](double full) { return static_cast<int>(std::clamp(std::lround(full * scale), 1L, 8192L)); };
  QImage image(extent(fullWidth), extent(frame.height), QImage::Format_RGB888);
  const Owned<SwsContext> context(sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format),
                                                 image.width(), image.height(), AV_PIX_FMT_RGB24, SWS_BICUBIC, nullptr,
                                                 nullptr, nullptr));
  if (!context || image.isNull()) {
    return {};
  }
  // If the video does not name its colour matrix, it is the usual one for its size.
  const int usual = frame.height < kSmallestHighDefinition ? SWS_CS_ITU601 : SWS_CS_ITU709;
  const int matrix = frame.colorspace == AVCOL_SPC_UNSPECIFIED ? usual : static_cast<int>(frame.colorspace);
  sws_setColorspaceDetails(context.get(), sws_getCoefficients(matrix), frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0,
                           sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
  std::uint8_t* const planes[] = {image.bits(), nullptr, nullptr, nullptr};
  const int strides[] = {static_cast<int>(image.bytesPerLine()), 0, 0, 0};
  const int rows = sws_scale(context.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
  return rows > 0 ? image : QImage();
}

}  // namespace

Result<MediaFile> MediaFile::open(const std::filesystem::path& file, MediaInput::Interrupted interrupted) {
  av_log_set_level(AV_LOG_QUIET);
  auto opened = MediaInput::open(file, interrupted);
  if (!opened) {
    return failed(opened.error());
  }
  MediaFile media(*std::move(opened), std::move(interrupted));
  media.describe();
  return media;
}

void MediaFile::describe() {
  AVFormatContext* context = input_.context();
  AVStream* stream = input_.picture();
  const AVRational pixelShape = av_guess_sample_aspect_ratio(context, stream, nullptr);
  const AVRational shape = pixelShape.num > 0 && pixelShape.den > 0 ? pixelShape : AVRational{1, 1};
  description_.width = stream->codecpar->width;
  description_.height = stream->codecpar->height;
  AVRational ratio{};
  av_reduce(&ratio.num, &ratio.den, std::int64_t{description_.width} * shape.num,
            std::int64_t{description_.height} * shape.den, INT32_MAX);
  if (input_.quarterTurns() % 2 == 1) {
    std::swap(description_.width, description_.height);
    std::swap(ratio.num, ratio.den);
  }
  description_.ratio = std::to_string(ratio.num) + ":" + std::to_string(ratio.den);
  const AVRational rate = av_guess_frame_rate(context, stream, nullptr);
  description_.framesPerSecond = rate.num > 0 && rate.den > 0 ? av_q2d(rate) : 0;
  description_.hasSound = input_.sound() != nullptr;
  description_.frames = stream->nb_frames;
  if (context->duration > 0 && context->duration_estimation_method != AVFMT_DURATION_FROM_BITRATE) {
    description_.seconds = static_cast<double>(context->duration) / AV_TIME_BASE;
    if (description_.frames <= 0) {
      const double shown = stream->duration > 0 ? static_cast<double>(stream->duration) * av_q2d(stream->time_base)
                                                : description_.seconds;
      description_.frames = std::llround(shown * description_.framesPerSecond);
    }
  } else if (const auto whole = input_.reopen()) {
    description_.frames = countFrames(*whole);
    description_.seconds =
        description_.framesPerSecond > 0 ? static_cast<double>(description_.frames) / description_.framesPerSecond : 0;
  }
}

Result<std::string> MediaFile::cover() {
  const AVStream* stream = input_.picture();
  if (avcodec_find_decoder(stream->codecpar->codec_id) == nullptr) {
    return failed(std::string("cannot be decoded: no decoder for ") + avcodec_get_name(stream->codecpar->codec_id));
  }
  const double offset = std::min(description_.seconds * kCoverShare, kCoverLatestSecond);
  auto frame = frameAt(input_, offset, interrupted_);
  if (!frame) {
    // Some files can only be read from their beginning.
    if (auto whole = input_.reopen()) {
      input_ = *std::move(whole);
      frame = frameAt(input_, 0, interrupted_);
    }
  }
  if (interrupted_()) {
    return failed("interrupted");
  }
  if (!frame) {
    return failed(kUndecodable);
  }
  const AVRational shape = av_guess_sample_aspect_ratio(input_.context(), input_.picture(), frame.get());
  QImage image = scaled(*frame, shape, input_.quarterTurns() % 2 == 1);
  if (input_.quarterTurns() != 0) {
    image = image.transformed(QTransform().rotate(90 * input_.quarterTurns()));
  }
  QBuffer jpeg;
  if (image.isNull() || !jpeg.open(QIODevice::WriteOnly) || !image.save(&jpeg, "JPEG", kCoverQuality)) {
    return failed(kUndecodable);
  }
  return jpeg.data().toStdString();
}

}  // namespace quilex
