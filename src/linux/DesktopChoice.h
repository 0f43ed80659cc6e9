#pragma once

#include <memory>
#include <string>

#include "linux/desktop/Desktop.h"

namespace quilex {

/// The desktop of this session: a Wayland compositor with a layer shell, else an X server, be it that of a Wayland
/// compositor; empty when there is neither. Blocks until the server has answered. `refusal` says why the kind of
/// desktop that comes first was not taken, if so.
std::unique_ptr<Desktop> openDesktop(std::string& refusal);

}  // namespace quilex
