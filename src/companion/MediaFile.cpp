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

#include "companion/Interruption.h"
#include "library/MediaFormats.h"

namespace quilex {

namespace {

// AV_TIME_BASE_Q, which is no C++.
constexpr AVRational kTimeBase{1, AV_TIME_BASE};
constexpr int kCoverWidth = 640;
constexpr int kCoverQuality = 85;
constexpr int kSmallestHighDefinition = 720;
// Where the cover is taken: past a fade-in, but not where it takes long to get to.
constexpr double kCoverShare = 0.1;
constexpr double kCoverLatestSecond = 10;
constexpr int kCoverMostPictures = 300;
constexpr const char* kUndecodable = "is damaged: its pictures cannot be decoded";

struct Free {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(SwsContext* context) const { sws_freeContext(context); }
};
template <typename Handle>
using Owned = std::unique_ptr<Handle, Free>;

int checkInterruption(void* /*opaque*/) {
  return interrupted() ? 1 : 0;
}

std::string openFailure(int error) {
  switch (error) {
    case AVERROR_INVALIDDATA:
      return "is not a video, or is damaged";
    case AVERROR(EINVAL):
      return "is not of a video format that the wallpaper plays";
    case AVERROR_EXIT:
      return "interrupted";
    default:
      break;
  }
  char text[AV_ERROR_MAX_STRING_SIZE] = {};
  av_strerror(error, text, sizeof text);
  return std::string("cannot be opened: ") + text;
}

// For files that do not tell how long they are; reads all of the file.
std::int64_t countPictures(AVFormatContext* input, int stream) {
  const Owned<AVPacket> packet(av_packet_alloc());
  std::int64_t count = 0;
  while (packet && av_read_frame(input, packet.get()) >= 0) {
    count += packet->stream_index == stream ? 1 : 0;
    av_packet_unref(packet.get());
  }
  return count;
}

double clockwiseRotation(const AVStream* stream) {
  const auto* matrix =
      reinterpret_cast<const std::int32_t*>(av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
  const double counterClockwise = matrix != nullptr ? av_display_rotation_get(matrix) : 0;
  return std::isnan(counterClockwise) ? 0 : -counterClockwise;
}

bool isQuarterTurn(double rotation) {
  return std::abs(std::lround(rotation / 90)) % 2 == 1;
}

/// Decodes the pictures of one stream from where its file stands.
class PictureReader {
 public:
  PictureReader(AVFormatContext* source, int index) : input(source), stream(index) {
    const AVCodecParameters* parameters = input->streams[stream]->codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters->codec_id);
    decoder.reset(avcodec_alloc_context3(codec));
    if (decoder) {
      decoder->thread_count = 0;
      opened = avcodec_parameters_to_context(decoder.get(), parameters) >= 0 &&
               avcodec_open2(decoder.get(), codec, nullptr) >= 0;
    }
  }

  /// The next picture, valid until the next call; null at the end.
  const AVFrame* next() {
    while (opened && frame && packet && !interrupted()) {
      const int received = avcodec_receive_frame(decoder.get(), frame.get());
      if (received == 0) {
        return frame.get();
      }
      // A picture that cannot be decoded is passed over.
      if (received == AVERROR_EOF || !feed()) {
        break;
      }
    }
    return nullptr;
  }

 private:
  bool feed() {
    while (av_read_frame(input, packet.get()) >= 0) {
      const bool wanted = packet->stream_index == stream;
      const int sent = wanted ? avcodec_send_packet(decoder.get(), packet.get()) : AVERROR(EAGAIN);
      av_packet_unref(packet.get());
      if (sent >= 0) {
        return true;
      }
    }
    return avcodec_send_packet(decoder.get(), nullptr) >= 0;
  }

  AVFormatContext* input;
  int stream;
  Owned<AVCodecContext> decoder;
  Owned<AVPacket> packet{av_packet_alloc()};
  Owned<AVFrame> frame{av_frame_alloc()};
  bool opened = false;
};

// The picture at that many seconds from the beginning, or the last one before; null where none can be decoded.
Owned<AVFrame> pictureAt(AVFormatContext* input, int index, double seconds) {
  if (index >= static_cast<int>(input->nb_streams)) {
    return nullptr;
  }
  const auto start = input->start_time != AV_NOPTS_VALUE ? input->start_time : 0;
  const auto target = start + std::llround(seconds * AV_TIME_BASE);
  if (seconds > 0) {
    av_seek_frame(input, -1, target, AVSEEK_FLAG_BACKWARD);
  }
  PictureReader pictures(input, index);
  Owned<AVFrame> latest;
  for (int count = 0; count < kCoverMostPictures; ++count) {
    const AVFrame* picture = pictures.next();
    if (picture == nullptr) {
      break;
    }
    latest.reset(av_frame_clone(picture));
    const auto time = picture->best_effort_timestamp;
    if (time == AV_NOPTS_VALUE || av_compare_ts(time, input->streams[index]->time_base, target, kTimeBase) >= 0) {
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
  // What does not name its colour matrix has the one that is usual for its size.
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

void MediaFile::CloseInput::operator()(AVFormatContext* context) const {
  avformat_close_input(&context);
}

Result<MediaFile::Input> MediaFile::openInput(const std::filesystem::path& file) {
  av_log_set_level(AV_LOG_QUIET);
  AVFormatContext* context = avformat_alloc_context();
  AVDictionary* options = nullptr;
  av_dict_set(&options, "format_whitelist", kMediaFormats, 0);
  av_dict_set(&options, "protocol_whitelist", kMediaProtocols, 0);
  if (context != nullptr) {
    context->interrupt_callback.callback = checkInterruption;
  }
  // With its protocol the path is taken as it stands, whatever characters are in it.
  int error = avformat_open_input(&context, ("file:" + file.string()).c_str(), nullptr, &options);
  av_dict_free(&options);
  Input opened(context);
  if (error >= 0) {
    error = avformat_find_stream_info(opened.get(), nullptr);
  }
  if (error < 0) {
    return Failure{openFailure(error)};
  }
  return opened;
}

Result<MediaFile> MediaFile::open(const std::filesystem::path& file) {
  auto opened = openInput(file);
  if (auto* failure = std::get_if<Failure>(&opened)) {
    return std::move(*failure);
  }
  MediaFile media(file, std::get<Input>(std::move(opened)));
  if (auto failure = media.describe()) {
    return std::move(*failure);
  }
  return media;
}

Outcome MediaFile::describe() {
  const auto isPicture = [](const AVStream* stream) {
    // A cover that a sound file carries is no video.
    return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
           (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0 && stream->codecpar->width > 0 &&
           stream->codecpar->height > 0;
  };
  pictureStream = av_find_best_stream(input.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  if (pictureStream < 0 || !isPicture(input->streams[pictureStream])) {
    return Failure{"has no picture"};
  }
  AVStream* stream = input->streams[pictureStream];
  rotation = clockwiseRotation(stream);
  const AVRational pixelShape = av_guess_sample_aspect_ratio(input.get(), stream, nullptr);
  const AVRational shape = pixelShape.num > 0 && pixelShape.den > 0 ? pixelShape : AVRational{1, 1};
  description.width = stream->codecpar->width;
  description.height = stream->codecpar->height;
  AVRational ratio{};
  av_reduce(&ratio.num, &ratio.den, std::int64_t{description.width} * shape.num,
            std::int64_t{description.height} * shape.den, INT32_MAX);
  if (isQuarterTurn(rotation)) {
    std::swap(description.width, description.height);
    std::swap(ratio.num, ratio.den);
  }
  description.ratio = std::to_string(ratio.num) + ":" + std::to_string(ratio.den);
  const AVRational rate = av_guess_frame_rate(input.get(), stream, nullptr);
  description.framesPerSecond = rate.num > 0 && rate.den > 0 ? av_q2d(rate) : 0;
  description.hasSound = av_find_best_stream(input.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0) >= 0;
  description.frames = stream->nb_frames;
  if (input->duration > 0 && input->duration_estimation_method != AVFMT_DURATION_FROM_BITRATE) {
    description.seconds = static_cast<double>(input->duration) / AV_TIME_BASE;
    if (description.frames <= 0) {
      const double shown = stream->duration > 0 ? static_cast<double>(stream->duration) * av_q2d(stream->time_base)
                                                : description.seconds;
      description.frames = std::llround(shown * description.framesPerSecond);
    }
  } else if (const auto again = openInput(path); const auto* whole = std::get_if<Input>(&again)) {
    description.frames = countPictures(whole->get(), pictureStream);
    description.seconds =
        description.framesPerSecond > 0 ? static_cast<double>(description.frames) / description.framesPerSecond : 0;
  }
  return std::nullopt;
}

Result<std::string> MediaFile::cover() {
  const AVStream* stream = input->streams[pictureStream];
  if (avcodec_find_decoder(stream->codecpar->codec_id) == nullptr) {
    return Failure{std::string("cannot be decoded: no decoder for ") + avcodec_get_name(stream->codecpar->codec_id)};
  }
  const double offset = std::min(description.seconds * kCoverShare, kCoverLatestSecond);
  auto picture = pictureAt(input.get(), pictureStream, offset);
  if (!picture) {
    // Some files can only be read from their beginning.
    auto again = openInput(path);
    if (auto* whole = std::get_if<Input>(&again)) {
      input = std::move(*whole);
      picture = pictureAt(input.get(), pictureStream, 0);
    }
  }
  if (interrupted()) {
    return Failure{"interrupted"};
  }
  if (!picture) {
    return Failure{kUndecodable};
  }
  const AVRational shape = av_guess_sample_aspect_ratio(input.get(), input->streams[pictureStream], picture.get());
  QImage image = scaled(*picture, shape, isQuarterTurn(rotation));
  if (const double turn = static_cast<double>(std::lround(rotation / 90)) * 90; turn != 0) {
    image = image.transformed(QTransform().rotate(turn));
  }
  QBuffer jpeg;
  if (image.isNull() || !jpeg.open(QIODevice::WriteOnly) || !image.save(&jpeg, "JPEG", kCoverQuality)) {
    return Failure{kUndecodable};
  }
  return jpeg.data().toStdString();
}

}  // namespace quilex
