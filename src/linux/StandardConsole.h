#pragma once

#include <cstdio>
#include <string_view>

#include "linux/toolkit/loop/Log.h"
#include "platform/Console.h"

namespace quilex {

/// The console over the standard streams and the log.
class StandardConsole : public Console {
 public:
  void print(std::string_view line) override {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
  }
  void warn(std::string_view line) override {
    std::fprintf(stderr, "quilexhelper: %.*s\n", static_cast<int>(line.size()), line.data());
  }
  void log(LogLevel level, std::string_view line) override {
    const auto size = static_cast<int>(line.size());
    switch (level) {
      case LogLevel::warning:
        qCWarning(playbackLog, "%.*s", size, line.data());
        break;
      case LogLevel::info:
        qCInfo(playbackLog, "%.*s", size, line.data());
        break;
      case LogLevel::debug:
        qCDebug(playbackLog, "%.*s", size, line.data());
        break;
    }
  }
};

}  // namespace quilex
