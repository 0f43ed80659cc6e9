#pragma once

#include <functional>
#include <stop_token>

#include "base/Disposable.h"

namespace quilex {

/// Runs slow work on other threads. Main thread.
class BackgroundWork {
 public:
  /// Runs on a thread of its own; must not throw. Should end soon once a stop is requested.
  using Work = std::function<void(const std::stop_token& stop)>;

  virtual ~BackgroundWork() = default;
  /// Starts the work at once, however much other work there is. Once the work has returned, `done` runs on the main
  /// thread, never from inside this call, and sees all that the work wrote. Releasing the token requests a stop and
  /// drops `done`, without waiting for the work, which must therefore own what it uses. Releasing it inside `done` is
  /// allowed.
  [[nodiscard]] virtual Disposable run(Work work, std::function<void()> done) = 0;
};

}  // namespace quilex
