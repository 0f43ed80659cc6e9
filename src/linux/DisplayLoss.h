#pragma once

#include <QtGlobal>
#include <functional>
#include <string>

#include "linux/toolkit/loop/FileDescriptor.h"

namespace quilex {

/// Ends the agent when its display server goes away. The agent's own connection may be the first to notice, and then
/// calls `end`. The toolkit and other libraries have connections too, and end the process by themselves when those
/// break. Before that they log a warning or run the exit handlers, and there this class goes first.
///
/// At most one exists at a time. Made and destroyed on the main thread.
class DisplayLoss {
 public:
  /// `server` is what messages to the user call the server. `connection` is a socket to it, of which a duplicate
  /// is kept. `lastSteps` may run more than once, on the main thread.
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
  static bool isLost(int patience);
  static void notice();

  const std::string server_;
  const FileDescriptor connection_;
  const std::function<void()> lastSteps_;
  bool isEnding_ = false;
};

}  // namespace quilex
