#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "base/Disposable.h"

namespace quilex {

/// The time of day, the user's calendar in local time, and alarms by them. Main thread.
class WallClock {
 public:
  using Time = std::chrono::sys_time<std::chrono::milliseconds>;

  virtual ~WallClock() = default;
  virtual Time now() const = 0;
  /// The local midnight that began the day of that time; the first moment of a day that has no midnight.
  virtual Time startOfDay(Time time) const = 0;
  /// The same local time on the following day, or the nearest later one where that does not exist; nothing when the
  /// calendar has no such day.
  virtual std::optional<Time> addingOneDay(Time time) const = 0;
  /// Runs the action once, on the main thread, when the clock has reached the date; for a date in the past at the next
  /// turn of the run loop, never from inside this call. Right across suspend and changes of the clock and of the time
  /// zone. The action does not run after its token is released; releasing a token inside its own action is allowed.
  [[nodiscard]] virtual Disposable at(Time date, std::function<void()> action) = 0;
};

}  // namespace quilex
