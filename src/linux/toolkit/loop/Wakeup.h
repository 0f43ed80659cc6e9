#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "linux/toolkit/loop/FileDescriptor.h"

namespace quilex {

/// Runs an action on the main thread for other threads and signal handlers. Signals that come before the action runs
/// are answered by one run.
class Wakeup {
 public:
  explicit Wakeup(std::function<void()> action);

  /// Any thread or signal handler; never blocks.
  void signal() const;

 private:
  FileDescriptor event_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quilex
