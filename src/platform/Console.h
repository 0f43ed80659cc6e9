#pragma once

#include <string_view>

namespace quilex {

/// The documented diagnostics of the agent. Main thread.
class Console {
 public:
  virtual ~Console() = default;
  /// Writes one bare line to standard output, at once. A failure is ignored.
  virtual void print(std::string_view line) = 0;
};

}  // namespace quilex
