#pragma once

#include <QImage>

#include "platform/Image.h"

namespace quilex {

/// A picture decoded for Qt.
class QtImage : public Image {
 public:
  explicit QtImage(QImage decoded) : image(std::move(decoded)) {}

  const QImage image;
};

/// `DecodeImage`: PNG by libpng, and the other formats of pixels by Qt.
DecodedImage decodeQtImage(std::string_view bytes, std::size_t maximumPixels, const std::stop_token& stop);

}  // namespace quilex
