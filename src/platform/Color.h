#pragma once

#include <cstdint>

namespace quilex {

/// An sRGB colour, not premultiplied.
struct Color {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  /// 255 is opaque.
  std::uint8_t alpha = 255;

  bool operator==(const Color&) const = default;
};

}  // namespace quilex
