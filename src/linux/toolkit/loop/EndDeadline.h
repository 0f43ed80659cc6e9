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
/// later ones change nothing. The main thread then has `kOrderlyEnd` to end the process by itself. After that a thread
/// of this class runs the last actions, for `kLastActions` at most, and leaves without any destructor.
class EndDeadline {
 public:
#ifdef QUILEX_SANITIZED
  // The sanitizers look for leaks at the very end, and are slow.
  static constexpr std::chrono::milliseconds kOrderlyEnd{10000};
#else
  static constexpr std::chrono::milliseconds kOrderlyEnd{1100};
#endif
  static constexpr std::chrono::milliseconds kLastActions{600};

  /// The one of the process, which is never destroyed. The first call takes the signals over and starts the thread.
  static EndDeadline& shared();

  /// Runs the action on the main thread when the end begins, or soon if it has begun, until the token is released. At
  /// most one token may exist at a time; needs a QCoreApplication.
  [[nodiscard]] Disposable observe(std::function<void()> action);
  /// An action for an end that is not orderly. It runs in a thread of its own beside the other actions, while the main
  /// thread may hang anywhere, and may hang itself. Releasing the token does not return once the actions run.
  [[nodiscard]] Disposable addLastAction(std::function<void()> action);
  /// Begins the end of the process with that exit status; the status of an end that has begun stays. Any thread.
  void begin(int status);

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
