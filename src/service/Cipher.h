#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quilex {

/// The service's key sets, for the main application. The agent uses one pair for everything and never chooses.
enum class KeyAndIv { local, net1, net2, net3, window_net, internalTest };

/// Enciphers a text with AES-128 in CBC mode with PKCS#7 padding; the result is base64. Nothing when OpenSSL fails.
std::optional<std::string> encryptToBase64(std::string_view text);

/// The UTF-8 text that was enciphered; nothing for anything that `encryptToBase64` cannot have made.
std::optional<std::string> decryptBase64ToString(std::string_view base64);

}  // namespace quilex
