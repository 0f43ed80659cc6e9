#pragma once

#include <chrono>
#include <memory>

#include "base/MainThread.h"
#include "platform/BackgroundWork.h"

namespace quilex {

/// Runs each piece of work in a thread of its own, which nobody joins; needs a QCoreApplication.
class QtBackgroundWork : public BackgroundWork {
 public:
  explicit QtBackgroundWork(std::chrono::milliseconds lastWait = std::chrono::milliseconds(200));
  /// Waits for the work in progress, for `lastWait` at most, so that work which stops when asked does not run while the
  /// process ends. Threads that hang are left behind.
  ~QtBackgroundWork() override;

  [[nodiscard]] Disposable run(Work work, std::function<void()> done) override;

 private:
  struct Threads;
  [[no_unique_address]] MainThread mainThread_;
  std::shared_ptr<Threads> threads_;
  std::chrono::milliseconds lastWait_;
};

}  // namespace quilex
