#include "library/FileURL.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "base/PercentCoding.h"

namespace quilex {

namespace {

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
  };
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), [&](char a, char b) { return lower(a) == lower(b); });
}

// Blanks and control characters have to be escaped in a URL.
bool isUnprintable(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte <= ' ' || byte == 0x7F;
}

}  // namespace

std::optional<std::filesystem::path> localPath(std::string_view url) {
  std::string path;
  if (startsWithIgnoringCase(url, "file:")) {
    url.remove_prefix(5);
    if (url.starts_with("//")) {
      url.remove_prefix(2);
      const auto hostEnd = url.find('/');
      const std::string_view host = url.substr(0, hostEnd);
      if (hostEnd == std::string_view::npos ||
          !(host.empty() || (host.size() == 9 && startsWithIgnoringCase(host, "localhost")))) {
        return std::nullopt;
      }
      url.remove_prefix(hostEnd);
    }
    url = url.substr(0, url.find_first_of("?#"));
    auto decoded = percentDecoded(url);
    if (!decoded || std::any_of(url.begin(), url.end(), isUnprintable)) {
      return std::nullopt;
    }
    path = std::move(*decoded);
  } else {
    path = url;
  }
  if (!path.starts_with('/') || path.find('\0') != std::string::npos) {
    return std::nullopt;
  }
  return path;
}

std::string fileURL(const std::filesystem::path& path) {
  return "file://" + percentEncoded(path.native(), "/");
}

bool namesExistingFile(std::string_view url) {
  const auto path = localPath(url);
  std::error_code ignored;
  return path && std::filesystem::is_regular_file(*path, ignored);
}

}  // namespace quilex
