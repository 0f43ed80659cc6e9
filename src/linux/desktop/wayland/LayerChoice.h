#pragma once

#include <string>

#include "linux/desktop/DesktopWindows.h"

namespace quilex {

/// Who draws icons on a Wayland desktop, as far as that can be known: no protocol lists the surfaces of other programs.
enum class DesktopIcons {
  /// Nobody who is known.
  none,
  /// A program with a surface in the background layer, which may let the wallpaper be seen through it.
  inBackground,
  /// Plasma's desktop, a window below all layers but the background. KWin forces it to be opaque, and stacks it with
  /// the background layer by age: a wallpaper there is seen or hidden by chance.
  opaque
};

/// Chooses the layers in which the wallpaper stands.
///
/// In the background layer, the order of the wallpaper and another program's background (swaybg, which sway starts by
/// default) depends on the compositor and on who started last. So the wallpaper stands in the bottom layer, which is in
/// front of every background, unless it has to stand behind icons. Panels may be in the bottom layer too, in any order:
/// there, the wallpaper takes only the room that they leave. What is seen of the output beside or through them belongs
/// to a second surface, in the background layer.
class LayerChoice {
 public:
  explicit LayerChoice(DesktopIcons icons) : icons_(icons) {}

  /// Whether the wallpaper is in the bottom layer.
  bool standsInFront(WindowOrder order) const {
    return icons_ != DesktopIcons::inBackground || order == WindowOrder::front;
  }
  /// Whether the whole of it is in the background layer, also while it is in the bottom layer: what leaves the
  /// background layer and comes back may not come back behind the icons.
  bool staysInBackground() const { return icons_ == DesktopIcons::inBackground; }
  /// Whether the wallpaper gets the presses on it; otherwise the desktop below does, which has a menu of its own.
  bool takesPresses() const { return icons_ == DesktopIcons::none; }
  /// In plain English.
  std::string describe(WindowOrder order) const;

 private:
  DesktopIcons icons_;
};

}  // namespace quilex
