#include "companion/FileDigest.h"

#include <openssl/evp.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <vector>

namespace quilex {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20U;

struct FreeContext {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

std::string hexadecimal(const unsigned char* bytes, std::size_t count) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text;
  for (std::size_t index = 0; index < count; ++index) {
    text.append({kDigits[bytes[index] >> 4U], kDigits[bytes[index] & 0xFU]});
  }
  return text;
}

}  // namespace

Result<std::string> fileDigest(const std::filesystem::path& file, const std::function<bool(std::uintmax_t)>& advance) {
  std::ifstream stream(file, std::ios::binary);
  const std::unique_ptr<EVP_MD_CTX, FreeContext> context(EVP_MD_CTX_new());
  bool digested = context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1;
  std::vector<char> block(kBlock);
  std::uintmax_t total = 0;
  while (digested && stream) {
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    const auto count = static_cast<std::size_t>(stream.gcount());
    digested = EVP_DigestUpdate(context.get(), block.data(), count) == 1;
    total += count;
    if (!advance(total)) {
      return failed("interrupted");
    }
  }
  if (!stream.eof()) {
    return failed(std::string("cannot be read: ") + std::strerror(errno));
  }
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int size = 0;
  if (!digested || EVP_DigestFinal_ex(context.get(), digest.data(), &size) != 1) {
    return failed("no SHA-256 could be made: the cryptography library does not offer it");
  }
  return hexadecimal(digest.data(), size);
}

}  // namespace quilex
