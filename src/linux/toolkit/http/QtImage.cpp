#include "linux/toolkit/http/QtImage.h"

#include <png.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QImageReader>
#include <QLoggingCategory>
#include <algorithm>
#include <memory>
#include <utility>

namespace quilex {

namespace {

/// In milliseconds. A malicious progressive JPEG can be repainted endlessly; a normal one takes less than a second.
constexpr qint64 kLongestDecoding = 10'000;

bool fits(qint64 width, qint64 height, std::size_t maximumPixels) {
  return width > 0 && height > 0 && static_cast<std::size_t>(width) <= maximumPixels / static_cast<std::size_t>(height);
}

/// Used instead of Qt's reader, with which libpng prints what is wrong with a file.
QImage decodePng(std::string_view bytes, std::size_t maximumPixels) {
  png_image header = {};
  header.version = PNG_IMAGE_VERSION;
  const std::unique_ptr<png_image, decltype(&png_image_free)> reading(&header, png_image_free);
  if (png_image_begin_read_from_memory(&header, bytes.data(), bytes.size()) == 0 ||
      !fits(header.width, header.height, maximumPixels)) {
    return {};
  }
  QImage image(static_cast<int>(header.width), static_cast<int>(header.height), QImage::Format_RGBA8888);
  header.format = PNG_FORMAT_RGBA;
  if (image.isNull() || png_image_finish_read(&header, nullptr, image.bits(),
                                              static_cast<png_int_32>(image.bytesPerLine()), nullptr) == 0) {
    return {};
  }
  return image;
}

/// Bytes whose end is reached early when decoding should stop.
class Source : public QBuffer {
 public:
  Source(QByteArray* bytes, const std::stop_token& stop) : QBuffer(bytes), stop_(stop) { clock_.start(); }

  bool isCut() const { return stop_.stop_requested() || clock_.hasExpired(kLongestDecoding); }

 protected:
  qint64 readData(char* data, qint64 size) override { return isCut() ? -1 : QBuffer::readData(data, size); }

 private:
  const std::stop_token& stop_;
  QElapsedTimer clock_;
};

QImage decodeOther(std::string_view bytes, std::size_t maximumPixels, const std::stop_token& stop) {
  static const bool isSilent = (QLoggingCategory::setFilterRules("qt.gui.imageio*=false"), true);
  Q_UNUSED(isSilent);
  auto content = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  Source source(&content, stop);
  source.open(QIODevice::ReadOnly);
  QImageReader reader(&source);
  // Only formats whose readers print nothing. Vector images are left out: they can require endless work or local files.
  static const QList<QByteArray> kFormats{"bmp", "gif", "jpeg", "jpg"};
  const QSize size = kFormats.contains(reader.format()) ? reader.size() : QSize();
  if (!fits(size.width(), size.height(), maximumPixels)) {
    return {};
  }
  QImage image = reader.read();
  // The header of some formats does not state the final size.
  if (source.isCut() || !fits(image.width(), image.height(), maximumPixels)) {
    return {};
  }
  if (image.depth() > 32) {
    image.convertTo(QImage::Format_RGBA8888);
  }
  return image;
}

}  // namespace

DecodedImage decodeQtImage(std::string_view bytes, std::size_t maximumPixels, const std::stop_token& stop) {
  constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1a\n";
  auto image =
      bytes.starts_with(kPngSignature) ? decodePng(bytes, maximumPixels) : decodeOther(bytes, maximumPixels, stop);
  if (image.isNull()) {
    return {};
  }
  const auto pixels = static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height());
  return {std::make_shared<QtImage>(std::move(image)), pixels};
}

}  // namespace quilex
