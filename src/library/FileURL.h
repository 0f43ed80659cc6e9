#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quilex {

/// The absolute path that a video's `url` names: the path of a `file:` URL of this machine (RFC 8089), or the text
/// itself if it is an absolute path. Nothing for another scheme, a relative path, a malformed escape, a URL with blanks
/// or control characters, or an embedded NUL.
std::optional<std::filesystem::path> localPath(std::string_view url);

/// The `file:` URL of an absolute path, which `localPath` reads back; the path need not be UTF-8.
std::string fileURL(const std::filesystem::path& path);

/// Whether `url` names an existing regular file. Waits for the file system; not for the agent's main thread.
bool namesExistingFile(std::string_view url);

}  // namespace quilex
