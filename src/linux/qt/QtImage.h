#pragma once

#include <QImage>

#include "platform/Image.h"

namespace quilex {

/// A picture decoded by Qt.
class QtImage : public Image {
 public:
  explicit QtImage(QImage decoded) : image(std::move(decoded)) {}

  const QImage image;
};

/// `DecodeImage` over Qt's image formats.
inline std::shared_ptr<Image> decodeQtImage(std::string_view bytes) {
  auto image = QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()));
  return image.isNull() ? nullptr : std::make_shared<QtImage>(std::move(image));
}

}  // namespace quilex
