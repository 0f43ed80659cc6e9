#pragma once

namespace quilex {

/// A rectangle in device pixels, x rightwards and y downwards. Edges of screens may be negative.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  bool operator==(const Rect&) const = default;
};

}  // namespace quilex
