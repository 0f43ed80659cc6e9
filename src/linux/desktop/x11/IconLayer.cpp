#include "linux/desktop/x11/IconLayer.h"

namespace quilex {

Placement placementFor(IconLayer::Kind kind, bool hidesIcons) {
  if (kind == IconLayer::Kind::none) {
    return {"below all windows; no program shows icons on the desktop", {}};
  }
  if (hidesIcons) {
    return {"in front of the desktop's icons, which are hidden", {}};
  }
  switch (kind) {
    case IconLayer::Kind::transparent:
      return {"below the desktop's icons", {}};
    case IconLayer::Kind::separable:
      return {"above the desktop, whose icons are left out of it", {}};
    default:
      return {"below the desktop, which hides it",
              "in the desktop's own settings, choose a background of a single colour; or choose \"Hide Desktop Icon\" "
              "in the menu"};
  }
}

}  // namespace quilex
