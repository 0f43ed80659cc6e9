#pragma once

#include <algorithm>
#include <chrono>
#include <utility>

namespace quilex {

/// The growing pauses between attempts to read a library that does not answer.
class RetryDelay {
 public:
  std::chrono::milliseconds next() { return std::exchange(delay_, std::min(2 * delay_, kLongest)); }
  void reset() { delay_ = kFirst; }

 private:
  static constexpr std::chrono::milliseconds kFirst{250};
  static constexpr std::chrono::milliseconds kLongest{10'000};
  std::chrono::milliseconds delay_ = kFirst;
};

}  // namespace quilex
