#pragma once

#include <QtGlobal>
#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "linux/toolkit/loop/FileDescriptor.h"

namespace quilex {

/// Ends the agent when its display server goes away. A thread waits for that and begins the end, whatever the main
/// thread does. The main thread then calls `end`, if it does not hang. The toolkit and other libraries end the process
/// by themselves when their own connections break; before that they log a warning or run the exit handlers, so this
/// class acts in both of these places.
///
/// At most one exists at a time. Made and destroyed on the main thread.
class DisplayLoss {
 public:
  /// `server` is what messages to the user call the server. `connection` is a socket to it, which must stay open as
  /// long as this object exists. `lastSteps` may run more than once, on the main thread.
  DisplayLoss(std::string server, int connection, std::function<void()> lastSteps);
  ~DisplayLoss();
  DisplayLoss(const DisplayLoss&) = delete;
  DisplayLoss& operator=(const DisplayLoss&) = delete;

  /// Writes one line to standard error, runs the last steps and ends the process with status 1, at the latest when
  /// EndDeadline does. Runs no destructors: they would need the server. Main thread.
  [[noreturn]] void end();

 private:
  static void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text);
  static void handleExit();
  /// Nothing if there is no instance. May wait a moment.
  static std::optional<bool> isLost();
  static void notice();
  /// Also notices a loss while the main thread hangs. Runs in a thread of its own.
  void watch();
  void report();

  const std::string server_;
  const int connection_;
  const std::function<void()> lastSteps_;
  std::atomic_flag isReported_;
  bool isEnding_ = false;
  const FileDescriptor stop_;
  std::thread watcher_;
};

}  // namespace quilex
