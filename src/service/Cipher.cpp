#include "service/Cipher.h"

#include <openssl/evp.h>

#include <cstdint>
#include <limits>
#include <memory>

#include "service/Base64.h"

namespace quilex {

namespace {

constexpr std::string_view kKey = "Rq7Lm2VxT9bKd4Ws";
constexpr std::string_view kInitialisationVector = "Hc3Np8ZyF6jQa1Ue";
constexpr std::size_t kBlockSize = 16;
// OpenSSL counts in `int`; the result has to fit into one as base64, too.
constexpr std::size_t kMaximumSize = std::numeric_limits<int>::max() / 4;
static_assert(kKey.size() == kBlockSize && kInitialisationVector.size() == kBlockSize);

enum class Direction { decipher = 0, encipher = 1 };

struct ContextDeleter {
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, ContextDeleter>;

const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::optional<std::string> runCipher(std::string_view input, Direction direction) {
  if (input.size() > kMaximumSize) {
    return {};
  }
  const Context context(EVP_CIPHER_CTX_new());
  std::string output(input.size() + kBlockSize, '\0');
  auto* const out = reinterpret_cast<unsigned char*>(output.data());
  int size = 0;
  int rest = 0;
  if (!context ||
      EVP_CipherInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, bytesOf(kKey), bytesOf(kInitialisationVector),
                        static_cast<int>(direction)) != 1 ||
      EVP_CipherUpdate(context.get(), out, &size, bytesOf(input), static_cast<int>(input.size())) != 1 ||
      EVP_CipherFinal_ex(context.get(), out + size, &rest) != 1) {
    return {};
  }
  output.resize(static_cast<std::size_t>(size) + static_cast<std::size_t>(rest));
  return output;
}

/// How many bytes the character that begins with this byte has, and the smallest code point that needs as many.
struct Utf8Form {
  std::size_t size;
  std::uint32_t smallest;
  std::uint32_t bits;
};

std::optional<Utf8Form> utf8Form(unsigned char first) {
  if (first < 0x80) {
    return Utf8Form{1, 0, first};
  }
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
  while (!text.empty()) {
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
  return true;
}

}  // namespace

std::optional<std::string> encryptToBase64(std::string_view text) {
  const auto cipherText = runCipher(text, Direction::encipher);
  return cipherText ? std::optional(base64Encode(*cipherText)) : std::nullopt;
}

std::optional<std::string> decryptBase64ToString(std::string_view base64) {
  const auto cipherText = base64Decode(base64);
  auto text = cipherText ? runCipher(*cipherText, Direction::decipher) : std::nullopt;
  if (text && !isUtf8(*text)) {
    text.reset();
  }
  return text;
}

}  // namespace quilex
