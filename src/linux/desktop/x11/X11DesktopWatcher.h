#pragma once

#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "linux/desktop/x11/IconLayer.h"
#include "linux/desktop/x11/IconReader.h"
#include "linux/toolkit/loop/FileDescriptor.h"
#include "linux/toolkit/loop/Wakeup.h"

namespace quilex {

/// Watches what other programs show on the desktop, and presses on the agent's own windows there, which let all input
/// through. A thread does that over a connection of its own, because it has to wait for the server's answers.
/// Main thread.
class X11DesktopWatcher {
 public:
  /// The handlers are called on the main thread.
  X11DesktopWatcher(std::function<void()> changed, std::function<void(const DesktopPress&)> pressed);
  ~X11DesktopWatcher();
  X11DesktopWatcher(const X11DesktopWatcher&) = delete;
  X11DesktopWatcher& operator=(const X11DesktopWatcher&) = delete;

  const IconLayer& icons() const { return icons_; }

 private:
  void watch();
  void publish(const IconLayer& seen);
  void publish(const DesktopPress& press);
  void deliver();

  const std::function<void()> changed_;
  const std::function<void(const DesktopPress&)> pressed_;
  IconLayer icons_;
  std::mutex mutex_;
  // What the thread has published and the main thread has not taken yet.
  IconLayer seen_;
  std::vector<DesktopPress> presses_;
  const Wakeup wakeup_;
  const FileDescriptor stop_;
  std::thread thread_;
};

}  // namespace quilex
