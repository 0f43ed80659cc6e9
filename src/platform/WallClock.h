#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "base/Disposable.h"

namespace quilex {

/// The time of day, the local calendar, and alarms. Main thread.
class WallClock {
 public:
  using Time = std::chrono::sys_time<std::chrono::milliseconds>;

  virtual ~WallClock() = default;
  virtual Time now() const = 0;
  /// The local midnight at which the day of that time began; the first moment of a day without a midnight.
  virtual Time startOfDay(Time time) const = 0;
  /// The same local time on the following day, or the next time that exists; nothing if the calendar has no such day.
  virtual std::optional<Time> addingOneDay(Time time) const = 0;
  /// Runs the action once when the clock has reached the date, also after a suspend or a change of clock or time zone;
  /// for a past date, in the next turn of the run loop. The action does not run after its token is released, and may
  /// release it.
  [[nodiscard]] virtual Disposable at(Time date, std::function<void()> action) = 0;
};

}  // namespace quilex
