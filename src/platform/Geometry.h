#pragma once

namespace quilex {

/// A rectangle in units of the desktop's global space, x rightwards and y downwards. A unit may be several device
/// pixels, as on a scaled monitor of a Wayland desktop. Edges of screens may be negative.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  bool operator==(const Rect&) const = default;
};

}  // namespace quilex
