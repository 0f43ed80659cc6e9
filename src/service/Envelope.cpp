#include "service/Envelope.h"

#include "service/Cipher.h"

namespace quilex::envelope {

namespace {

// The service wants its quotes escaped as if the body were to stand inside a JSON string; nothing else is escaped.
std::string escaped(std::string_view body) {
  std::string text;
  for (const char character : body) {
    if (character == '"') {
      text += '\\';
    }
    text += character;
  }
  return text;
}

// What may stand in the value of a form field as it is: the unreserved characters of RFC 3986, and the two more that a
// query allows and that do not delimit anything there.
std::string percentEncoded(std::string_view text) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/?";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char character : text) {
    if (kPlain.find(character) != std::string_view::npos) {
      encoded += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      encoded += '%';
      encoded += kDigits[byte >> 4U];
      encoded += kDigits[byte & 0xFU];
    }
  }
  return encoded;
}

}  // namespace

std::string guideBody(const std::string& userID, const std::string& version) {
  return R"({"ui":")" + userID + R"(","v":")" + version + R"("})";
}

std::string heartbeatBody(const std::string& n, const std::string& userID, std::int64_t ct, const std::string& version,
                          int type) {
  return R"({"n":")" + n + R"(", "ui":")" + userID + R"(","ct":")" + std::to_string(ct) + R"(","v":")" + version +
         R"(","type":")" + std::to_string(type) + R"(","ismac":"1"})";
}

std::optional<std::string> form(Function function, std::string_view body) {
  const auto cipherText = encryptToBase64(escaped(body));
  if (!cipherText) {
    return {};
  }
  return "f=" + std::to_string(static_cast<int>(function)) + "&i=" + percentEncoded(*cipherText);
}

std::optional<std::string> read(std::string_view reply) {
  auto text = decryptBase64ToString(reply);
  if (text) {
    std::erase(*text, '\0');
  }
  return text;
}

}  // namespace quilex::envelope
