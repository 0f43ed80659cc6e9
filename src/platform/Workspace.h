#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/Disposable.h"

namespace quilex {

/// The user's session around the agent. Main thread; every call returns at once.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// Starts the application with that bundle identifier; a failure is ignored.
  virtual void launchApplication(const std::string& bundleIdentifier) = 0;
  /// Opens the address in the program that the user has for its scheme. A failure is ignored, and so is an address
  /// without a scheme.
  virtual void openURL(const std::string& url) = 0;
  /// Lets the user choose a file with one of these name extensions; `done` is told once whether one was chosen. The
  /// panel does not hold anything else up.
  virtual void showOpenPanel(const std::vector<std::string>& allowedFileTypes,
                             std::function<void(bool chosen)> done) = 0;
  /// Has the agent started whenever the user logs in, or not any more. The last call counts. Ignored where it cannot be
  /// done.
  virtual void setStartsAtLogin(bool startsAtLogin) = 0;
  /// Ends the agent, from the run loop.
  virtual void terminate() = 0;

  /// Tells that the machine woke from sleep. Never, where nothing on the system tells it.
  [[nodiscard]] virtual Disposable observeWake(std::function<void()> handler) = 0;
  /// Tells that the agent had the keyboard and lost it to another program.
  [[nodiscard]] virtual Disposable observeResignActive(std::function<void()> handler) = 0;
};

}  // namespace quilex
