#pragma once

#include <QImage>

#include "platform/Image.h"

namespace quilex {

/// An image decoded for Qt.
class QtImage : public Image {
 public:
  explicit QtImage(QImage decoded) : image(std::move(decoded)) {}

  const QImage image;
};

/// A `DecodeImage`. libpng decodes PNG, and Qt the other pixel formats.
DecodedImage decodeQtImage(std::string_view bytes, std::size_t maximumPixels, const std::stop_token& stop);

}  // namespace quilex
