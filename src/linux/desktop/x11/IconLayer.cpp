#include "linux/desktop/x11/IconLayer.h"

namespace quilex {

std::string describe(IconLayer::Kind kind) {
  switch (kind) {
    case IconLayer::Kind::none:
      return "below all windows; no program shows icons";
    case IconLayer::Kind::transparent:
      return "below the desktop's icons, which are transparent around them";
    case IconLayer::Kind::separable:
      return "above the desktop, with its icons left out";
    case IconLayer::Kind::opaque:
      break;
  }
  return "below the desktop, which hides it";
}

}  // namespace quilex
