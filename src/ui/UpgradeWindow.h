#pragma once

#include <memory>

#include "platform/InterfaceWindow.h"
#include "platform/Workspace.h"

namespace quilex {

class UpgradeWindowController;

/// The panel of an update offer. Main thread.
class UpgradeWindow {
 public:
  /// Wires the panel's "upgradeButton" and "closeButton". The controller and the workspace must outlive it.
  UpgradeWindow(std::unique_ptr<InterfaceWindow> panel, const UpgradeWindowController& windowController,
                Workspace& workspace);
  UpgradeWindow(const UpgradeWindow&) = delete;
  UpgradeWindow& operator=(const UpgradeWindow&) = delete;

  /// Though it has no title bar.
  static constexpr bool canBecomeKeyWindow() { return true; }
  static constexpr bool canBecomeMainWindow() { return true; }

  InterfaceWindow& panel() { return *content_; }
  void show();
  void close() { content_->close(); }
  /// Opens the offer's address, if it is one, and closes the panel in any case.
  void openUpdate();
  /// Closes the panel at once.
  void performClose();

 private:
  std::unique_ptr<InterfaceWindow> content_;
  const UpgradeWindowController& controller_;
  Workspace& workspace_;
};

}  // namespace quilex
