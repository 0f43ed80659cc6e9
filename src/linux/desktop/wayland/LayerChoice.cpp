#include "linux/desktop/wayland/LayerChoice.h"

namespace quilex {

std::string LayerChoice::describe(WindowOrder order) const {
  switch (icons_) {
    case DesktopIcons::inBackground:
      return order == WindowOrder::back ? "background layer, for the desktop's icons to be in front of it"
                                        : "bottom layer, in front of the desktop's icons";
    case DesktopIcons::opaque:
      return "bottom layer, in front of the desktop and its icons, which are opaque; clicks pass through to them";
    case DesktopIcons::none:
      break;
  }
  return "bottom layer, in front of other backgrounds";
}

}  // namespace quilex
