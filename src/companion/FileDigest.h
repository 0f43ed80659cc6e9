#pragma once

#include <filesystem>
#include <functional>

#include "companion/Result.h"

namespace quilex {

/// The SHA-256 of a file's contents in lower-case hex digits. `advance` is told the number of bytes read so far, and
/// the reading ends when it answers false.
Result<std::string> fileDigest(const std::filesystem::path& file, const std::function<bool(std::uintmax_t)>& advance);

}  // namespace quilex
