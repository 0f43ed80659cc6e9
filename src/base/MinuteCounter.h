#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace quilex {

/// Counts events of the last minute, to the second. It needs no timer.
class MinuteCounter {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Times never decrease from one call to the next.
  void add(Time now, std::uint32_t count = 1) {
    turnTo(now);
    counts_[index()] += count;
  }
  std::uint32_t lastMinute(Time now) {
    turnTo(now);
    return std::accumulate(counts_.begin(), counts_.end(), std::uint32_t{0});
  }

 private:
  // Drops the seconds that are a minute old.
  void turnTo(Time now) {
    const auto next = std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count();
    if (next - second_ >= static_cast<std::int64_t>(counts_.size())) {
      counts_.fill(0);
      second_ = next;
    }
    while (second_ < next) {
      ++second_;
      counts_[index()] = 0;
    }
  }
  std::size_t index() const { return static_cast<std::size_t>(second_) % counts_.size(); }

  std::array<std::uint32_t, 60> counts_{};
  std::int64_t second_ = 0;
};

}  // namespace quilex
