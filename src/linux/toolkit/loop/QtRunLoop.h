#pragma once

#include "base/MainThread.h"
#include "platform/RunLoop.h"

namespace quilex {

/// The run loop over Qt's event loop; needs a QCoreApplication. Timers are accurate to 5 %, so that the system can
/// bundle wake-ups.
class QtRunLoop : public RunLoop {
 public:
  [[nodiscard]] Disposable after(std::chrono::milliseconds delay, std::function<void()> action) override;
  [[nodiscard]] Disposable every(std::chrono::milliseconds interval, std::function<void()> action) override;

 private:
  [[no_unique_address]] MainThread mainThread_;
};

}  // namespace quilex
