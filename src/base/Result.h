#pragma once

#include <string>
#include <tl/expected.hpp>
#include <utility>

namespace quilex {

/// Why something was not done, as a clause for a person: no capital at the start, no full stop at the end.
struct Failure {
  std::string message;
};

/// A value, or why there is none. It becomes `std::expected` once the compilers of both supported Debian releases have
/// that.
template <typename Value>
using Result = tl::expected<Value, Failure>;

/// For functions that return no value when they succeed.
using Outcome = Result<void>;

/// What a failing function returns: `return failed("is empty")`, `return failed(opened.error())`.
inline tl::unexpected<Failure> failed(Failure failure) {
  return tl::unexpected(std::move(failure));
}
inline tl::unexpected<Failure> failed(std::string message) {
  return failed(Failure{std::move(message)});
}

}  // namespace quilex
