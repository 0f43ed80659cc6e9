#pragma once

#include <memory>

#include "linux/desktop/Desktop.h"

namespace quilex {

/// The Wayland compositor at WAYLAND_DISPLAY; fails when there is none with a layer shell. Blocks until the compositor
/// has answered.
Result<std::unique_ptr<Desktop>> openWaylandDesktop();

}  // namespace quilex
