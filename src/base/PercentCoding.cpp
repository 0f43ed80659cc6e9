#include "base/PercentCoding.h"

#include <charconv>

namespace quilex {

std::string percentEncoded(std::string_view text, std::string_view alsoPlain) {
  constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char character : text) {
    if (kUnreserved.find(character) != std::string_view::npos || alsoPlain.find(character) != std::string_view::npos) {
      encoded.push_back(character);
    } else {
      const auto byte = static_cast<unsigned char>(character);
      encoded.append({'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
    }
  }
  return encoded;
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] != '%') {
      decoded.push_back(text[index]);
      continue;
    }
    const std::string_view digits = text.substr(index + 1, 2);
    unsigned int byte = 0;
    if (digits.size() < 2 ||
        std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16).ptr != digits.data() + 2) {
      return std::nullopt;
    }
    decoded.push_back(static_cast<char>(byte));
    index += 2;
  }
  return decoded;
}

}  // namespace quilex
