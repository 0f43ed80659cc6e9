#include "linux/Desktop.h"

namespace quilex {

std::unique_ptr<Desktop> Desktop::open() {
  auto desktop = openWaylandDesktop();
  return desktop ? std::move(desktop) : openX11Desktop();
}

}  // namespace quilex
