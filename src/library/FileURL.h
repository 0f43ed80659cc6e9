#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace quilex {

/// The absolute path that a video's `url` names: the path of a `file:` URL of this machine (RFC 8089, percent-encoded),
/// or an absolute path as it stands. Nothing for any other text: another scheme, a relative path, a malformed escape,
/// characters that a URL cannot hold, an embedded NUL.
std::optional<std::filesystem::path> localPath(std::string_view url);

/// Whether `url` names a file that exists. Directories, devices, pipes and sockets are no files.
bool namesExistingFile(std::string_view url);

}  // namespace quilex
