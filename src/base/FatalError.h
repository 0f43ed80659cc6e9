#pragma once

#include <string_view>

namespace quilex {

/// Stops the process with one line on standard error. Only for states that cannot happen by design; an expected
/// failure is a typed result.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace quilex
