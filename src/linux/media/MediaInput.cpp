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

// What the decoders of the look for stream parameters may do.
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

// What libavformat reads from: the file, at a place of its own.
struct Reader {
  std::shared_ptr<const OpenFile> file;
  MediaInput::Interrupted interrupted;
  std::int64_t place = 0;

  static int read(void* opaque, std::uint8_t* buffer, int size) {
    auto& reader = *static_cast<Reader*>(opaque);
    if (reader.interrupted()) {
      return AVERROR_EXIT;
    }
    const std::int64_t count = reader.file->read(buffer, static_cast<std::size_t>(size), reader.place);
    reader.place += std::max<std::int64_t>(count, 0);
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
  }
  static std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
    auto& reader = *static_cast<Reader*>(opaque);
    whence &= ~AVSEEK_FORCE;
    if (whence == SEEK_SET) {
      return offset < 0 ? AVERROR(EINVAL) : reader.place = offset;
    }
    return whence == AVSEEK_SIZE ? reader.file->size() : AVERROR(EINVAL);
  }
};

std::string tooLarge(const AVStream* stream) {
  return "is too large: " + std::to_string(stream->codecpar->width) + "x" + std::to_string(stream->codecpar->height) +
         " pixels, where at most 8192x8192 are played, or as many in another shape";
}

}  // namespace

std::shared_ptr<const OpenFile> OpenFile::open(const std::filesystem::path& file) {
  // Opening a pipe or a device for reading neither waits nor changes anything that way.
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    return nullptr;
  }
  std::shared_ptr<const OpenFile> opened(new OpenFile(descriptor));
  struct stat status = {};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    opened.reset();
    errno = EINVAL;
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

void MediaInput::Close::operator()(AVFormatContext* context) const {
  AVIOContext* reading = context->pb;
  avformat_close_input(&context);
  if (reading != nullptr) {
    delete static_cast<Reader*>(reading->opaque);
    av_freep(&reading->buffer);
    avio_context_free(&reading);
  }
}

MediaInput::MediaInput(std::filesystem::path name, std::shared_ptr<const OpenFile> readFile, Interrupted check)
    : path_(std::move(name)), openFile_(std::move(readFile)), interrupted_(std::move(check)) {}

MediaInput::Opened MediaInput::open(const std::filesystem::path& file, Interrupted interrupted) {
  auto opened = OpenFile::open(file);
  if (!opened) {
    return Error{errno == EINVAL ? "is not a regular file" : std::string("cannot be opened: ") + std::strerror(errno)};
  }
  return read(MediaInput(file, std::move(opened), std::move(interrupted)));
}

MediaInput::Opened MediaInput::reopen() const {
  MediaInput again(path_, openFile_, interrupted_);
  const AVInputFormat* const mov = av_find_input_format("mov");
  // This format's header says all that the first packets would; to look at those takes decoding.
  if (source_->iformat == mov && again.openContext() >= 0 && again.source_->iformat == mov &&
      again.source_->nb_streams == source_->nb_streams) {
    again.pictureIndex_ = pictureIndex_;
    again.soundIndex_ = soundIndex_;
    return again;
  }
  return read(MediaInput(path_, openFile_, interrupted_));
}

MediaInput::Opened MediaInput::read(MediaInput input) {
  if (const int error = input.openContext(); error < 0) {
    return Error{openFailure(error)};
  }
  // Before anything is decoded, and again with what the pictures themselves say.
  AVFormatContext* context = input.source_.get();
  const auto largest = [&] {
    const AVStream* found = nullptr;
    for (unsigned int index = 0; index < context->nb_streams; ++index) {
      if (found == nullptr || pixels(context->streams[index]) > pixels(found)) {
        found = context->streams[index];
      }
    }
    return found;
  };
  if (const AVStream* stream = largest(); stream != nullptr && pixels(stream) > kMostPixels) {
    return Error{tooLarge(stream)};
  }
  DecoderLimits limits(context->nb_streams);
  if (const int error = avformat_find_stream_info(context, limits.data()); error < 0) {
    return Error{openFailure(error)};
  }
  if (const AVStream* stream = largest(); stream != nullptr && pixels(stream) > kMostPixels) {
    return Error{tooLarge(stream)};
  }
  if (const std::string problem = input.chooseStreams(); !problem.empty()) {
    return Error{problem};
  }
  return input;
}

int MediaInput::openContext() {
  AVFormatContext* context = avformat_alloc_context();
  auto reader = std::make_unique<Reader>(Reader{openFile_, interrupted_});
  auto* buffer = static_cast<unsigned char*>(av_malloc(kReadBufferBytes));
  AVIOContext* reading =
      avio_alloc_context(buffer, kReadBufferBytes, 0, reader.get(), Reader::read, nullptr, Reader::seek);
  if (context == nullptr || reading == nullptr) {
    avformat_free_context(context);
    av_free(buffer);
    return AVERROR(ENOMEM);
  }
  Reader* const state = reader.release();
  context->pb = reading;
  context->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_GENPTS;
  context->io_open = refuseToOpen;
  context->interrupt_callback = {[](void* opaque) { return static_cast<Reader*>(opaque)->interrupted() ? 1 : 0; },
                                 state};
  AVDictionary* options = nullptr;
  av_dict_set(&options, "format_whitelist", kMediaFormats, 0);
  av_dict_set(&options, "protocol_whitelist", "none", 0);
  // The name only helps to tell the formats that have no signature.
  const int error = avformat_open_input(&context, path_.c_str(), nullptr, &options);
  av_dict_free(&options);
  if (error < 0) {
    // The context is gone, but what it read from is not.
    delete state;
    av_freep(&reading->buffer);
    avio_context_free(&reading);
    return error;
  }
  source_.reset(context);
  return 0;
}

std::string MediaInput::chooseStreams() {
  pictureIndex_ = av_find_best_stream(source_.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  // A cover that a sound file carries is no video.
  if (pictureIndex_ < 0 || (picture()->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 || pixels(picture()) <= 0) {
    return "has no picture";
  }
  soundIndex_ = av_find_best_stream(source_.get(), AVMEDIA_TYPE_AUDIO, -1, pictureIndex_, nullptr, 0);
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
