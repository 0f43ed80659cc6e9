#pragma once

#include <cstdio>
#include <string_view>

#include "platform/Console.h"

namespace quilex {

class StandardConsole : public Console {
 public:
  void print(std::string_view line) override {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
  }
  void warn(std::string_view line) override {
    std::fprintf(stderr, "quilexhelper: %.*s\n", static_cast<int>(line.size()), line.data());
  }
};

}  // namespace quilex
