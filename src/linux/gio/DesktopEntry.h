#pragma once

#include <string>

namespace quilex {

/// Launches the application with the desktop entry `id`.desktop (Desktop Entry Specification 1.5). False when there is
/// none or it cannot be started. Does not wait for the application.
bool launchDesktopEntry(const std::string& id);

}  // namespace quilex
