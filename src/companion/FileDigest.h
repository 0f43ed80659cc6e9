#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "base/Result.h"

namespace quilex {

/// The SHA-256 of a file's contents in lower-case hex digits. `advance` gets the number of bytes read so far, and ends
/// the reading by returning false.
Result<std::string> fileDigest(const std::filesystem::path& file, const std::function<bool(std::uintmax_t)>& advance);

}  // namespace quilex
