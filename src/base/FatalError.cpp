#include "base/FatalError.h"

#include <cstdio>
#include <cstdlib>

namespace quilex {

void fatalError(std::string_view message) {
  std::fprintf(stderr, "fatal: %.*s\n", static_cast<int>(message.size()), message.data());
  std::abort();
}

}  // namespace quilex
