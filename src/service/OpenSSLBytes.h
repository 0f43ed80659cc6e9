#pragma once

#include <string>
#include <string_view>

namespace quilex {

/// Text as OpenSSL takes it.
inline const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

inline unsigned char* bytesOf(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

}  // namespace quilex
