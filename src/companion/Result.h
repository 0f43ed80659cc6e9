#pragma once

#include <optional>
#include <string>
#include <variant>

namespace quilex {

/// What the program's exit status says.
inline constexpr int kNotDone = 1;
inline constexpr int kNotUnderstood = 2;

/// Why something was not done, as a clause for the person at the terminal.
struct Failure {
  std::string message;
  int exitStatus = kNotDone;
};

template <typename Value>
using Result = std::variant<Value, Failure>;

/// The failure of a step that yields nothing.
using Outcome = std::optional<Failure>;

}  // namespace quilex
