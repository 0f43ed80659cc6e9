#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What a request to the service, and its reply, look like on the wire.
namespace quilex::envelope {

enum class Function { heartbeat = 21, upgrade = 24, guide = 214 };

constexpr const char* kContentType = "application/x-www-form-urlencoded; charset=utf-8";

/// The body of a guide request, and of a request for update information. The values are not escaped.
std::string guideBody(const std::string& userID, const std::string& version);

/// `type` is the number of the heartbeat's kind.
std::string heartbeatBody(const std::string& n, const std::string& userID, std::int64_t ct, const std::string& version,
                          int type);

/// Escapes and enciphers a body and puts it into a form; nothing when enciphering fails.
std::optional<std::string> form(Function function, std::string_view body);

/// The text that a reply carries, without its NUL characters; nothing when it does not decipher.
std::optional<std::string> read(std::string_view reply);

}  // namespace quilex::envelope
