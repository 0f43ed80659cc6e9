#pragma once

#include <memory>
#include <string>

#include "linux/desktop/Desktop.h"

namespace quilex {

/// Connects to the desktop of this session: a Wayland compositor with a layer shell, else an X server (XWayland, too).
/// Null if there is neither. Blocks until the server has answered. `refusal` is set to why Wayland is not used, if so.
std::unique_ptr<Desktop> openDesktop(std::string& refusal);

}  // namespace quilex
