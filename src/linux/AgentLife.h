#pragma once

#include <memory>
#include <string>

#include "linux/desktop/Desktop.h"

namespace quilex {

/// Builds the agent on that desktop, launches it, runs it until it is asked to end, and ends it in order. Returns the
/// exit status. `backendReason` says why the desktop that is tried first was not taken, if so. Needs a QApplication.
int runAgent(std::unique_ptr<Desktop> desktop, std::string backendReason);

}  // namespace quilex
