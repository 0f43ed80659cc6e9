#pragma once

#include <string_view>

namespace quilex {

/// Where the agent speaks to whoever started it. Main thread.
class Console {
 public:
  virtual ~Console() = default;
  /// Writes one bare line, a documented diagnostic, to standard output, at once. A failure is ignored.
  virtual void print(std::string_view line) = 0;
  /// Writes one line for a person to standard error.
  virtual void warn(std::string_view line) = 0;
};

}  // namespace quilex
