#pragma once

#include <compare>

#include "platform/Geometry.h"

namespace quilex {

struct PixelSize {
  int width = 0;
  int height = 0;
  // NOLINTNEXTLINE(modernize-use-nullptr): the check takes the comparison's zero for a pointer
  auto operator<=>(const PixelSize&) const = default;
};

/// A rectangle of whole pixels, x rightwards and y downwards.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const PixelRect&) const = default;
};

/// How many pixels of the display one unit of the desktop's space has in each direction.
struct PixelScale {
  double horizontal = 1;
  double vertical = 1;
  bool operator==(const PixelScale&) const = default;
};

/// The nearest whole number; halves are rounded away from zero.
int pixels(double length);
/// Rounds each of the four numbers by itself.
PixelRect pixels(const Rect& rect);

/// The size at which a window has its picture drawn, and the part of that picture that the window shows.
struct PicturePart {
  PixelSize picture;
  PixelRect part;
  bool operator==(const PicturePart&) const = default;
};

/// The picture fills `view`, which is in the coordinates of the window. The part is what lies in the window: it is
/// within the picture and no larger than the window. The position of `window` does not count.
PicturePart shownPart(const Rect& view, const Rect& window, PixelScale scale = {});

}  // namespace quilex
