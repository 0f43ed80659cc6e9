#pragma once

#include <string>
#include <vector>

#include "linux/render/Pixels.h"

namespace quilex {

/// The icons that another program shows on the desktop.
struct IconLayer {
  enum class Kind {
    /// No program shows icons.
    none,
    /// Its windows are transparent around the icons, so the wallpaper may lie below.
    transparent,
    /// Its windows have a background, and `icons` is known. The wallpaper may lie above, without these pixels.
    separable,
    /// Its windows have a background from which the icons cannot be told.
    opaque
  };

  Kind kind = Kind::none;
  /// Pixels of icons, on the root window; rectangles do not overlap.
  std::vector<PixelRect> icons;
  /// Whether a window with icons lies above one of the agent's, or below one.
  bool hasWindowAbove = false;
  bool hasWindowBelow = false;

  bool operator==(const IconLayer&) const = default;
};

/// What the wallpaper does about the icons, as people read it: a phrase without a subject.
std::string describe(IconLayer::Kind kind);

}  // namespace quilex
