#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quilex {

/// The percent coding of RFC 3986, section 2.1: each byte but the unreserved characters (letters, digits, "-._~") and
/// those in `alsoPlain` becomes "%" and two capital hexadecimal digits. The text need not be UTF-8.
std::string percentEncoded(std::string_view text, std::string_view alsoPlain = {});

/// The bytes that a percent-coded text stands for; nothing when a "%" is not followed by two hexadecimal digits.
std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace quilex
