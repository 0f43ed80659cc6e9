#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quilex {

/// Standard base64 with padding, on one line.
std::string base64Encode(std::string_view bytes);

/// The bytes of a standard base64 text; nothing if it has a character outside the alphabet, such as a blank or a line
/// break, or is not padded to a multiple of four characters. The result can grow by `room` bytes without moving.
std::optional<std::string> base64Decode(std::string_view text, std::size_t room = 0);

}  // namespace quilex
