#pragma once

#include <chrono>
#include <functional>

#include "base/Disposable.h"

namespace quilex {

/// The main thread's run loop. Actions run on the main thread, never from inside the call that arms them, and not
/// after their token is released; releasing a token inside its own action is allowed.
class RunLoop {
 public:
  virtual ~RunLoop() = default;
  /// Runs the action once, after the delay; a delay of zero means the next turn of the loop.
  [[nodiscard]] virtual Disposable after(std::chrono::milliseconds delay, std::function<void()> action) = 0;
  /// Runs the action every interval, the first time after one interval.
  [[nodiscard]] virtual Disposable every(std::chrono::milliseconds interval, std::function<void()> action) = 0;
};

}  // namespace quilex
