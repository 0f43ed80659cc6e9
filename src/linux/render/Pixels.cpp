#include "linux/render/Pixels.h"

#include <algorithm>
#include <cmath>

namespace quilex {

int pixels(double length) {
  return static_cast<int>(std::lround(length));
}

PixelRect pixels(const Rect& rect) {
  return {pixels(rect.x), pixels(rect.y), pixels(rect.width), pixels(rect.height)};
}

PicturePart shownPart(const Rect& view, const Rect& window, PixelScale scale) {
  const auto across = [&](double length) { return pixels(length * scale.horizontal); };
  const auto down = [&](double length) { return pixels(length * scale.vertical); };
  const PixelSize picture{across(view.width), down(view.height)};
  const int left = std::clamp(across(-view.x), 0, picture.width);
  const int top = std::clamp(down(-view.y), 0, picture.height);
  return {picture,
          {left, top, std::min(across(window.width), picture.width - left),
           std::min(down(window.height), picture.height - top)}};
}

}  // namespace quilex
