#pragma once

#include <memory>

#include "platform/BackgroundWork.h"

namespace quilex {

/// Work on threads of its own, one for each, which nobody joins; needs a QCoreApplication.
class QtBackgroundWork : public BackgroundWork {
 public:
  QtBackgroundWork();
  /// Waits a moment for work that is under way, so that what heeds its stop does not run into the end of the process.
  /// What hangs is left behind.
  ~QtBackgroundWork() override;

  [[nodiscard]] Disposable run(Work work, std::function<void()> done) override;

 private:
  struct Threads;
  std::shared_ptr<Threads> threads_;
};

}  // namespace quilex
