#pragma once

#include <memory>

#include "linux/desktop/Desktop.h"

namespace quilex {

/// The X server at DISPLAY; fails when there is none with 24-bit colour. Blocks until the server has answered.
Result<std::unique_ptr<Desktop>> openX11Desktop();

}  // namespace quilex
