#include "service/Cipher.h"

#include <openssl/evp.h>

#include <algorithm>
#include <cstdint>
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
// OpenSSL counts in `int`; the result has to fit into one as base64, too.
constexpr std::size_t kLongestText = std::numeric_limits<int>::max() / 4;
static_assert(kKey.size() == kBlockSize && kInitialisationVector.size() == kBlockSize);

enum class Direction { decipher = 0, encipher = 1 };

struct ContextDeleter {
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, ContextDeleter>;

/// In place, because texts may be large; for nothing to be moved the text needs room for one more block.
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

/// How many bytes the character beyond ASCII that begins with this byte has, and the smallest code point that needs as
/// many.
struct Utf8Form {
  std::size_t size;
  std::uint32_t smallest;
  std::uint32_t bits;
};

std::optional<Utf8Form> utf8Form(unsigned char first) {
  if ((first & 0xE0U) == 0xC0) {
    return Utf8Form{2, 0x80, first & 0x1FU};
  }
  if ((first & 0xF0U) == 0xE0) {
    return Utf8Form{3, 0x800, first & 0x0FU};
  }
  if ((first & 0xF8U) == 0xF0) {
    return Utf8Form{4, 0x10000, first & 0x07U};
  }
  return {};
}

bool isUtf8(std::string_view text) {
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  while (true) {
    text.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(text, isAscii) - text.begin()));
    if (text.empty()) {
      return true;
    }
    const auto form = utf8Form(static_cast<unsigned char>(text.front()));
    if (!form || form->size > text.size()) {
      return false;
    }
    std::uint32_t codePoint = form->bits;
    for (const char next : text.substr(1, form->size - 1)) {
      const auto byte = static_cast<unsigned char>(next);
      if ((byte & 0xC0U) != 0x80) {
        return false;
      }
      codePoint = codePoint << 6U | (byte & 0x3FU);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < form->smallest || codePoint > 0x10FFFF || surrogate) {
      return false;
    }
    text.remove_prefix(form->size);
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
