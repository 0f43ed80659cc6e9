#pragma once

#include <memory>
#include <string>

#include "linux/desktop/Desktop.h"

namespace quilex {

/// The Wayland compositor at WAYLAND_DISPLAY; empty when there is none with a layer shell, and then `refusal` says why.
/// Blocks until the compositor has answered.
std::unique_ptr<Desktop> openWaylandDesktop(std::string& refusal);

}  // namespace quilex
