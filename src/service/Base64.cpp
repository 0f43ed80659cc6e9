#include "service/Base64.h"

#include <openssl/evp.h>

#include <limits>

#include "app/FatalError.h"

namespace quilex {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
// OpenSSL counts in `int`; half of it leaves room for the longer form.
constexpr std::size_t kMaximumSize = std::numeric_limits<int>::max() / 2;

const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* bytesOf(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

}  // namespace

std::string base64Encode(std::string_view bytes) {
  if (bytes.size() > kMaximumSize) {
    fatalError("too much to encode as base64");
  }
  std::string text((bytes.size() + 2) / 3 * 4, '\0');
  EVP_EncodeBlock(bytesOf(text), bytesOf(bytes), static_cast<int>(bytes.size()));
  return text;
}

std::optional<std::string> base64Decode(std::string_view text) {
  const std::size_t padding = text.ends_with("==") ? 2 : (text.ends_with('=') ? 1 : 0);
  // OpenSSL itself skips white space.
  if (text.size() % 4 != 0 || text.size() > kMaximumSize ||
      text.substr(0, text.size() - padding).find_first_not_of(kAlphabet) != std::string_view::npos) {
    return {};
  }
  std::string bytes(text.size() / 4 * 3, '\0');
  EVP_DecodeBlock(bytesOf(bytes), bytesOf(text), static_cast<int>(text.size()));
  bytes.resize(bytes.size() - padding);
  return bytes;
}

}  // namespace quilex
