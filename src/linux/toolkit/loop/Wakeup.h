#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "linux/toolkit/loop/FileDescriptor.h"

namespace quilex {

/// Lets foreign threads and signal handlers have an action run on the main thread. Signals given before the action
/// runs are answered by one run.
class Wakeup {
 public:
  explicit Wakeup(std::function<void()> action);

  /// From any thread or signal handler, as often as needed; never blocks.
  void signal() const;

 private:
  FileDescriptor event_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quilex
