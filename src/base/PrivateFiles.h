#pragma once

#include <filesystem>

#include "base/Result.h"

namespace quilex {

/// The mode of files that show what a user does and watches.
inline constexpr auto kPrivateFile = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;

/// Makes a folder and the missing ones above it, with mode 0700. A folder that exists keeps its mode.
Outcome createPrivateFolder(const std::filesystem::path& folder);

}  // namespace quilex
