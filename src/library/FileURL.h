#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quilex {

/// The absolute path that a video's `url` names: the path of a `file:` URL of this machine (RFC 8089, percent-encoded),
/// or an absolute path as it stands. Nothing for any other text: another scheme, a relative path, a malformed escape,
/// characters that a URL cannot hold, an embedded NUL.
std::optional<std::filesystem::path> localPath(std::string_view url);

/// The `file:` URL of an absolute path, as `localPath` reads it back; the path's bytes need not be UTF-8.
std::string fileURL(const std::filesystem::path& path);

/// Whether `url` names a file that exists. Directories, devices, pipes and sockets are no files.
bool namesExistingFile(std::string_view url);

}  // namespace quilex
