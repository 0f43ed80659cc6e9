#include "library/FileURL.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <system_error>
#include <utility>

namespace quilex {

namespace {

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
  };
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), [&](char a, char b) { return lower(a) == lower(b); });
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const auto character = static_cast<unsigned char>(text[index]);
    if (character == '%') {
      unsigned int byte = 0;
      const char* first = text.data() + index + 1;
      if (index + 2 >= text.size() || std::from_chars(first, first + 2, byte, 16).ptr != first + 2) {
        return std::nullopt;
      }
      decoded.push_back(static_cast<char>(byte));
      index += 2;
    } else if (character <= ' ' || character == 0x7F) {
      return std::nullopt;
    } else {
      decoded.push_back(static_cast<char>(character));
    }
  }
  return decoded;
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
    auto decoded = percentDecoded(url.substr(0, url.find_first_of("?#")));
    if (!decoded) {
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
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlainMarks = "/-._~";
  std::string url = "file://";
  for (const char character : path.native()) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isAlphanumeric =
        (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
    if (isAlphanumeric || kPlainMarks.find(character) != std::string_view::npos) {
      url.push_back(character);
    } else {
      url.append({'%', kHexDigits[byte >> 4U], kHexDigits[byte & 0xFU]});
    }
  }
  return url;
}

bool namesExistingFile(std::string_view url) {
  const auto path = localPath(url);
  std::error_code ignored;
  return path && std::filesystem::is_regular_file(*path, ignored);
}

}  // namespace quilex
