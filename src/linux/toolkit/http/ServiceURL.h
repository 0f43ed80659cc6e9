#pragma once

#include <optional>
#include <string>

namespace quilex {

/// The origin that a service's address names, without a slash at its end; nothing when the address has more to it than
/// a slash, or is neither https nor http of a loopback host.
std::optional<std::string> serviceOrigin(const std::string& address);

}  // namespace quilex
