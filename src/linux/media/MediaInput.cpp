#include "linux/media/MediaInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

extern "C" {
#include <libavutil/display.h>
}

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

#include "library/MediaFormats.h"

namespace quilex {

namespace {

constexpr int kReadBufferBytes = 64 * 1024;

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

int refuseToOpen(AVFormatContext* /*context*/, AVIOContext** /*opened*/, const char* /*url*/, int /*flags*/,
                 AVDictionary** /*options*/) {
  return AVERROR(EACCES);
}

const std::int32_t* displayMatrix(const AVStream* stream) {
#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100)
  const AVCodecParameters* parameters = stream->codecpar;
  const AVPacketSideData* data =
      av_packet_side_data_get(parameters->coded_side_data, parameters->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
  return data != nullptr ? reinterpret_cast<const std::int32_t*>(data->data) : nullptr;
#else
  return reinterpret_cast<const std::int32_t*>(av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
#endif
}

std::int64_t pixels(const AVStream* stream) {
  return std::int64_t{stream->codecpar->width} * stream->codecpar->height;
}

// Options for the decoders with which libavformat finds out about the streams.
class DecoderLimits {
 public:
  explicit DecoderLimits(unsigned int streams) : options_(streams, nullptr) {
    for (AVDictionary*& each : options_) {
      av_dict_set_int(&each, "max_pixels", kMostPixels, 0);
    }
  }
  ~DecoderLimits() {
    for (AVDictionary*& each : options_) {
      av_dict_free(&each);
    }
  }
  DecoderLimits(const DecoderLimits&) = delete;
  DecoderLimits& operator=(const DecoderLimits&) = delete;
  AVDictionary** data() { return options_.data(); }

 private:
  std::vector<AVDictionary*> options_;
};

// Lets libavformat read the file, at a position of its own.
struct Reader {
  std::shared_ptr<const OpenFile> file;
  MediaInput::Interrupted interrupted;
  std::int64_t position = 0;

  static int read(void* opaque, std::uint8_t* buffer, int size) {
    auto& reader = *static_cast<Reader*>(opaque);
    if (reader.interrupted()) {
      return AVERROR_EXIT;
    }
    const std::int64_t count = reader.file->read(buffer, static_cast<std::size_t>(size), reader.position);
    reader.position += std::max<std::int64_t>(count, 0);
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
  }
  static std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
    auto& reader = *static_cast<Reader*>(opaque);
    whence &= ~AVSEEK_FORCE;
    if (whence == SEEK_SET) {
      return offset < 0 ? AVERROR(EINVAL) : reader.position = offset;
    }
    return whence == AVSEEK_SIZE ? reader.file->size() : AVERROR(EINVAL);
  }
};

std::string tooLarge(const AVStream* stream) {
  return "is too large: " + std::to_string(stream->codecpar->width) + "x" + std::to_string(stream->codecpar->height) +
         " pixels, where at most 8192x8192 are played, or as many in another shape";
}

}  // namespace

Result<std::shared_ptr<const OpenFile>> OpenFile::open(const std::filesystem::path& file) {
  // With these flags, opening a pipe or a device for reading neither waits nor changes anything.
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    return failed(std::string("cannot be opened: ") + std::strerror(errno));
  }
  std::shared_ptr<const OpenFile> opened(new OpenFile(descriptor));
  struct stat status = {};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    return failed("is not a regular file");
  }
  return opened;
}

OpenFile::~OpenFile() {
  close(descriptor_);
}

std::int64_t OpenFile::read(void* buffer, std::size_t bytes, std::int64_t offset) const {
  const ssize_t count = pread(descriptor_, buffer, bytes, offset);
  return count < 0 ? -errno : count;
}

std::int64_t OpenFile::size() const {
  struct stat status = {};
  return fstat(descriptor_, &status) != 0 ? -errno : status.st_size;
}

struct MediaInput::Source {
  Reader reader;
  IoContext io;
  InputContext context;
};

MediaInput::MediaInput(std::filesystem::path path, std::shared_ptr<const OpenFile> openFile, Interrupted interrupted)
    : path_(std::move(path)), openFile_(std::move(openFile)), interrupted_(std::move(interrupted)) {}

MediaInput::~MediaInput() = default;
MediaInput::MediaInput(MediaInput&& other) noexcept = default;
MediaInput& MediaInput::operator=(MediaInput&& other) noexcept = default;

AVFormatContext* MediaInput::context() const {
  return source_->context.get();
}

Result<MediaInput> MediaInput::open(const std::filesystem::path& file, Interrupted interrupted) {
  auto opened = OpenFile::open(file);
  if (!opened) {
    return failed(opened.error());
  }
  return read(MediaInput(file, *std::move(opened), std::move(interrupted)));
}

Result<MediaInput> MediaInput::reopen() const {
  MediaInput again(path_, openFile_, interrupted_);
  const AVInputFormat* const mov = av_find_input_format("mov");
  // The header of this format describes the streams completely, so no packets have to be decoded for that.
  if (context()->iformat == mov && again.openContext() >= 0 && again.context()->iformat == mov &&
      again.context()->nb_streams == context()->nb_streams) {
    again.pictureIndex_ = pictureIndex_;
    again.soundIndex_ = soundIndex_;
    return again;
  }
  return read(MediaInput(path_, openFile_, interrupted_));
}

Result<MediaInput> MediaInput::read(MediaInput input) {
  if (const int error = input.openContext(); error < 0) {
    return failed(openFailure(error));
  }
  // Before anything is decoded.
  if (const Outcome sizes = input.checkSizes(); !sizes) {
    return failed(sizes.error());
  }
  DecoderLimits limits(input.context()->nb_streams);
  if (const int error = avformat_find_stream_info(input.context(), limits.data()); error < 0) {
    return failed(openFailure(error));
  }
  // Decoded frames may be larger than the header says.
  if (const Outcome sizes = input.checkSizes(); !sizes) {
    return failed(sizes.error());
  }
  if (const Outcome chosen = input.chooseStreams(); !chosen) {
    return failed(chosen.error());
  }
  return input;
}

int MediaInput::openContext() {
  auto source = std::make_unique<Source>();
  source->reader = {openFile_, interrupted_};
  source->io = makeIoContext(kReadBufferBytes, false, &source->reader, Reader::read, nullptr, Reader::seek);
  source->context.reset(avformat_alloc_context());
  if (!source->io || !source->context) {
    return AVERROR(ENOMEM);
  }
  AVFormatContext* context = source->context.get();
  context->pb = source->io.get();
  context->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_GENPTS;
  context->io_open = refuseToOpen;
  context->interrupt_callback = {[](void* opaque) { return static_cast<Reader*>(opaque)->interrupted() ? 1 : 0; },
                                 &source->reader};
  Dictionary options;
  options.set("format_whitelist", kMediaFormats);
  options.set("protocol_whitelist", "none");
  // A context that cannot be opened is freed by the call. The path helps only with formats that have no signature.
  context = source->context.release();
  if (const int error = avformat_open_input(&context, path_.c_str(), nullptr, options.get()); error < 0) {
    return error;
  }
  source->context.reset(context);
  source_ = std::move(source);
  return 0;
}

Outcome MediaInput::checkSizes() const {
  const std::span streams(context()->streams, context()->nb_streams);
  const auto largest = std::ranges::max_element(streams, {}, pixels);
  if (largest != streams.end() && pixels(*largest) > kMostPixels) {
    return failed(tooLarge(*largest));
  }
  return {};
}

Outcome MediaInput::chooseStreams() {
  pictureIndex_ = av_find_best_stream(context(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  // A cover that a sound file carries is no video.
  if (pictureIndex_ < 0 || (picture()->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 || pixels(picture()) <= 0) {
    return failed("has no picture");
  }
  soundIndex_ = av_find_best_stream(context(), AVMEDIA_TYPE_AUDIO, -1, pictureIndex_, nullptr, 0);
  return {};
}

int MediaInput::quarterTurns() const {
  const std::int32_t* matrix = displayMatrix(picture());
  const double counterClockwise = matrix != nullptr ? av_display_rotation_get(matrix) : 0;
  if (std::isnan(counterClockwise)) {
    return 0;
  }
  return static_cast<int>((std::lround(-counterClockwise / 90) % 4 + 4) % 4);
}

}  // namespace quilex
