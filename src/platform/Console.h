#pragma once

#include <string_view>

namespace quilex {

enum class LogLevel { warning, info, debug };

/// The agent's standard output, standard error and log. Main thread.
class Console {
 public:
  virtual ~Console() = default;
  /// Writes one line, a documented diagnostic, to standard output and flushes it. A failure is ignored.
  virtual void print(std::string_view line) = 0;
  /// Writes one line for the user to standard error.
  virtual void warn(std::string_view line) = 0;
  /// Writes a line of the category "playback" to the log, which is off by default.
  virtual void log(LogLevel level, std::string_view line) = 0;
};

}  // namespace quilex
