#pragma once

#include <string_view>

namespace quilex {

enum class LogLevel { warning, info, debug };

/// Where the agent speaks to whoever started it. Main thread.
class Console {
 public:
  virtual ~Console() = default;
  /// Writes one bare line, a documented diagnostic, to standard output, at once. A failure is ignored.
  virtual void print(std::string_view line) = 0;
  /// Writes one line for a person to standard error.
  virtual void warn(std::string_view line) = 0;
  /// Writes a line of the room "playback" to the log, for whoever looks for a fault; that is off unless asked for.
  virtual void log(LogLevel level, std::string_view line) = 0;
};

}  // namespace quilex
