#pragma once

#include <optional>
#include <string>

namespace quilex {

/// Launches the application with the desktop entry `id`.desktop (Desktop Entry Specification 1.5). False if there is
/// none or it cannot be started. Does not wait for the application.
bool launchDesktopEntry(const std::string& id);

/// The file of that entry, if there is one.
std::optional<std::string> desktopEntryFile(const std::string& id);

}  // namespace quilex
