#include "service/Base64.h"

#include <openssl/evp.h>

#include <algorithm>
#include <limits>

#include "base/FatalError.h"
#include "service/OpenSSLBytes.h"

namespace quilex {

namespace {

// OpenSSL counts in `int`; half of its range leaves room for the longer form.
constexpr std::size_t kMaximumSize = std::numeric_limits<int>::max() / 2;

}  // namespace

std::string base64Encode(std::string_view bytes) {
  if (bytes.size() > kMaximumSize) {
    fatalError("too much to encode as base64");
  }
  std::string text((bytes.size() + 2) / 3 * 4, '\0');
  EVP_EncodeBlock(bytesOf(text), bytesOf(bytes), static_cast<int>(bytes.size()));
  return text;
}

std::optional<std::string> base64Decode(std::string_view text, std::size_t room) {
  const std::size_t padding = text.ends_with("==") ? 2 : (text.ends_with('=') ? 1 : 0);
  // OpenSSL takes a '=' anywhere for a digit.
  if (text.size() % 4 != 0 || text.size() > kMaximumSize ||
      std::min(text.find('='), text.size()) != text.size() - padding) {
    return {};
  }
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + room);
  bytes.resize(text.size() / 4 * 3);
  // OpenSSL skips white space at both ends, which makes the result shorter.
  if (EVP_DecodeBlock(bytesOf(bytes), bytesOf(text), static_cast<int>(text.size())) != static_cast<int>(bytes.size())) {
    return {};
  }
  bytes.resize(bytes.size() - padding);
  return bytes;
}

}  // namespace quilex
