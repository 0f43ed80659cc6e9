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

  /// Starts the application with that bundle identifier. A failure is ignored.
  virtual void launchApplication(const std::string& bundleIdentifier) = 0;
  /// Opens the address in the user's program for its scheme. A failure is ignored, and so is an address without a
  /// scheme.
  virtual void openURL(const std::string& url) = 0;
  /// Shows a panel, not a modal one, for choosing a file with one of these extensions. `done` is called once.
  virtual void showOpenPanel(const std::vector<std::string>& allowedFileTypes,
                             std::function<void(bool chosen)> done) = 0;
  /// Makes the agent start whenever the user logs in, or no longer. The last call counts. Ignored where that is
  /// impossible.
  virtual void setStartsAtLogin(bool startsAtLogin) = 0;
  /// Ends the agent from the run loop.
  virtual void terminate() = 0;

  /// Notifies when the machine woke from sleep; never on systems that do not announce it.
  [[nodiscard]] virtual Disposable observeWake(std::function<void()> handler) = 0;
  /// Notifies when the agent lost the keyboard to another program.
  [[nodiscard]] virtual Disposable observeResignActive(std::function<void()> handler) = 0;
};

}  // namespace quilex
