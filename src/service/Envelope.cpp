#include "service/Envelope.h"

#include "base/PercentCoding.h"
#include "service/Cipher.h"

namespace quilex::envelope {

namespace {

// A query may also contain these unescaped (RFC 3986, 3.4).
constexpr const char* kPlainInQuery = "/?";

// The service expects quotes to be escaped, as in a JSON string, but nothing else.
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
  return "f=" + std::to_string(static_cast<int>(function)) + "&i=" + percentEncoded(*cipherText, kPlainInQuery);
}

std::optional<std::string> read(std::string_view reply) {
  auto text = decryptBase64ToString(reply);
  if (text) {
    std::erase(*text, '\0');
  }
  return text;
}

}  // namespace quilex::envelope
