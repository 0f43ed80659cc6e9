#pragma once

#include <functional>
#include <stop_token>

#include "base/Disposable.h"

namespace quilex {

/// Runs slow work beside the main thread. To be called on the main thread.
class BackgroundWork {
 public:
  /// Runs on another thread, beside whatever else runs there; must not throw. Should end soon once a stop is requested.
  using Work = std::function<void(const std::stop_token& stop)>;

  virtual ~BackgroundWork() = default;
  /// Starts the work at once, however much other work there is. When it has returned, `done` runs on the main thread,
  /// never from inside this call, and sees all that the work wrote. Releasing the token requests a stop and drops
  /// `done`, and waits for neither; the work owns what it uses, therefore. Releasing it inside `done` is allowed.
  [[nodiscard]] virtual Disposable run(Work work, std::function<void()> done) = 0;
};

}  // namespace quilex
