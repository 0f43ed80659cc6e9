#pragma once

#include <optional>
#include <string>

namespace quilex {

/// The origin that a service's address names, without a slash at its end. Nothing if the address has more than a slash
/// after the host, or is neither https nor http of a loopback host.
std::optional<std::string> serviceOrigin(const std::string& address);

}  // namespace quilex
