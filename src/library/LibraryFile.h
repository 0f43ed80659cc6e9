#pragma once

#include <filesystem>
#include <string>

#include "base/Result.h"

namespace quilex {

/// The library's file in the application-support directory.
std::string libraryFile(const std::filesystem::path& supportDirectory);

/// Puts a copy of the template at `library` if nothing is there; its rows then name the loops beside the template. The
/// copy appears whole or not at all, and never replaces what another process has put there; several processes may do
/// this at once.
Outcome placeLibrary(const std::filesystem::path& templateFile, const std::filesystem::path& library);

}  // namespace quilex
