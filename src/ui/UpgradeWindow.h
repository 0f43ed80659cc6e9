#pragma once

#include <memory>

#include "platform/InterfaceWindow.h"
#include "platform/Workspace.h"

namespace quilex {

class UpgradeWindowController;

/// The panel of an update offer. Main thread.
class UpgradeWindow {
 public:
  /// Connects the panel's "closeButton". The controller and the workspace must outlive the window.
  UpgradeWindow(std::unique_ptr<InterfaceWindow> panel, const UpgradeWindowController& controller,
                Workspace& workspace);
  UpgradeWindow(const UpgradeWindow&) = delete;
  UpgradeWindow& operator=(const UpgradeWindow&) = delete;

  /// A window without a title bar gets the keyboard only if it claims this.
  static constexpr bool canBecomeKeyWindow() { return true; }
  static constexpr bool canBecomeMainWindow() { return true; }

  InterfaceWindow& panel() { return *panel_; }
  void show();
  void close() { panel_->close(); }
  /// Opens the offer's address, if it is valid, and closes the panel in any case.
  void openUpdate();
  /// The action of the button that closes the panel.
  void performClose();

 private:
  std::unique_ptr<InterfaceWindow> panel_;
  const UpgradeWindowController& controller_;
  Workspace& workspace_;
};

}  // namespace quilex
