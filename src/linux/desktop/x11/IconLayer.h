#pragma once

#include <string>
#include <vector>

#include "linux/render/Pixels.h"

namespace quilex {

/// The icons that another program shows on the desktop.
struct IconLayer {
  /// If several windows show icons, the kind among theirs that comes last in this list counts for all.
  enum class Kind {
    /// No program shows icons.
    none,
    /// Its windows have a background from which the icons cannot be told.
    opaque,
    /// Its windows are transparent around the icons, so the wallpaper may lie below.
    transparent,
    /// Its windows have a background, and `icons` is known. The wallpaper may lie above, without these pixels.
    separable
  };

  Kind kind = Kind::none;
  /// Pixels of icons, on the root window; rectangles do not overlap.
  std::vector<PixelRect> icons;
  /// Whether a window with icons lies above one of the agent's, or below one.
  bool hasWindowAbove = false;
  bool hasWindowBelow = false;

  bool operator==(const IconLayer&) const = default;
};

/// Where the wallpaper lies on the desktop.
struct Placement {
  /// A phrase such as "below all windows".
  std::string description;
  /// What a person can do so that it is seen, if it is not.
  std::string advice;
  bool operator==(const Placement&) const = default;
};
/// `hidesIcons` if the wallpaper is in front of them by the person's wish.
Placement placementFor(IconLayer::Kind kind, bool hidesIcons);

}  // namespace quilex
