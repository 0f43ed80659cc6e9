#pragma once

#include <chrono>
#include <functional>

#include "base/Disposable.h"

namespace quilex {

/// The main thread's run loop. Actions run on the main thread, never from inside the call that schedules them, and not
/// after their token is released. An action may release its own token.
class RunLoop {
 public:
  virtual ~RunLoop() = default;
  /// Runs the action once, after the delay; zero is the next turn of the loop.
  [[nodiscard]] virtual Disposable after(std::chrono::milliseconds delay, std::function<void()> action) = 0;
  /// Runs the action again and again, the first time after one interval.
  [[nodiscard]] virtual Disposable every(std::chrono::milliseconds interval, std::function<void()> action) = 0;
};

}  // namespace quilex
