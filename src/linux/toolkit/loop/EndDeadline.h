#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <mutex>

#include "base/Disposable.h"
#include "linux/toolkit/loop/FileDescriptor.h"
#include "linux/toolkit/loop/Wakeup.h"

namespace quilex {

/// Ends the process in time, whatever hangs. The end begins with the first SIGTERM, SIGINT or SIGHUP, or with `begin`;
/// later signals are ignored. The main thread then has `kOrderlyEnd` to end the process. After that a thread of this
/// class runs the last actions, for `kLastActions` at most, and ends the process without running any destructor.
class EndDeadline {
 public:
#ifdef QUILEX_SANITIZED
  // The sanitizers are slow, and check for leaks at the very end.
  static constexpr std::chrono::milliseconds kOrderlyEnd{10000};
#else
  static constexpr std::chrono::milliseconds kOrderlyEnd{1100};
#endif
  static constexpr std::chrono::milliseconds kLastActions{600};

  /// The process's only instance, which is never destroyed. The first call installs the signal handlers and starts the
  /// thread.
  static EndDeadline& shared();

  /// Runs the action on the main thread when the end begins, or soon if it has begun already, until the token is
  /// released. Only one token may exist at a time; needs a QCoreApplication.
  [[nodiscard]] Disposable observe(std::function<void()> action);
  /// Adds an action for when the main thread does not end in time. It runs in a thread of its own, and may hang. Once
  /// the actions run, releasing the token blocks until the process ends.
  [[nodiscard]] Disposable addLastAction(std::function<void()> action);
  /// Begins the end of the process with that exit status, or returns the one that an earlier call gave it. Any thread.
  int begin(int status);

 private:
  EndDeadline();
  [[noreturn]] void watch();
  [[noreturn]] void end();

  FileDescriptor event_;
  std::atomic<int> exitStatus_;
  std::mutex observing_;
  bool begun_ = false;
  std::unique_ptr<Wakeup> observer_;
  std::mutex ending_;
  std::list<std::function<void()>> lastActions_;
};

}  // namespace quilex
