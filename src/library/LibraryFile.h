#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace quilex {

/// The library's file in the application-support directory.
std::string libraryFile(const std::filesystem::path& supportDirectory);

/// Puts a copy of the template where the library is missing; its loops are those beside the template. The library
/// appears whole or not at all, and one that another process has put there meanwhile stays; several processes may do
/// this at once.
std::error_code placeLibrary(const std::filesystem::path& templateFile, const std::filesystem::path& library);

}  // namespace quilex
