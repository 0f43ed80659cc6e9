#include "service/Cipher.h"

#include <openssl/asn1.h>
#include <openssl/evp.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "service/Base64.h"
#include "service/OpenSSLBytes.h"

namespace quilex {

namespace {

constexpr std::string_view kKey = "Rq7Lm2VxT9bKd4Ws";
constexpr std::string_view kInitialisationVector = "Hc3Np8ZyF6jQa1Ue";
constexpr std::size_t kBlockSize = 16;
// OpenSSL counts in `int`, and the result must fit into one even as base64.
constexpr std::size_t kLongestText = std::numeric_limits<int>::max() / 4;
static_assert(kKey.size() == kBlockSize && kInitialisationVector.size() == kBlockSize);

enum class Direction { decipher = 0, encipher = 1 };

struct ContextDeleter {
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, ContextDeleter>;

/// Works in place, because texts may be large. If the text has room for one more block, it is not moved either.
std::optional<std::string> runCipher(std::string text, Direction direction) {
  if (text.size() > kLongestText) {
    return {};
  }
  const Context context(EVP_CIPHER_CTX_new());
  const auto inputSize = static_cast<int>(text.size());
  text.resize(text.size() + kBlockSize);
  unsigned char* const bytes = bytesOf(text);
  int size = 0;
  int rest = 0;
  if (!context ||
      EVP_CipherInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, bytesOf(kKey), bytesOf(kInitialisationVector),
                        static_cast<int>(direction)) != 1 ||
      EVP_CipherUpdate(context.get(), bytes, &size, bytes, inputSize) != 1 ||
      EVP_CipherFinal_ex(context.get(), bytes + size, &rest) != 1) {
    return {};
  }
  text.resize(static_cast<std::size_t>(size) + static_cast<std::size_t>(rest));
  return text;
}

bool isUtf8(std::string_view text) {
  constexpr std::size_t kLongestCharacter = 4;
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  while (true) {
    // Most texts are nearly all ASCII, which is much faster to skip than to decode.
    text.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(text, isAscii) - text.begin()));
    if (text.empty()) {
      return true;
    }
    unsigned long codePoint = 0;
    const int size = UTF8_getc(bytesOf(text), static_cast<int>(std::min(text.size(), kLongestCharacter)), &codePoint);
    if (size <= 0) {
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(size));
  }
}

}  // namespace

std::optional<std::string> encryptToBase64(std::string_view text) {
  const auto cipherText = runCipher(std::string(text), Direction::encipher);
  return cipherText ? std::optional(base64Encode(*cipherText)) : std::nullopt;
}

std::optional<std::string> decryptBase64ToString(std::string_view base64) {
  auto cipherText = base64Decode(base64, kBlockSize);
  auto text = cipherText ? runCipher(*std::move(cipherText), Direction::decipher) : std::nullopt;
  if (text && !isUtf8(*text)) {
    text.reset();
  }
  return text;
}

}  // namespace quilex
