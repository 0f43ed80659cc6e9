#pragma once

#include <memory>

#include "linux/desktop/Desktop.h"

namespace quilex {

/// The X server at DISPLAY; empty when there is none with 24-bit colour. Blocks until the server has answered.
std::unique_ptr<Desktop> openX11Desktop();

}  // namespace quilex
