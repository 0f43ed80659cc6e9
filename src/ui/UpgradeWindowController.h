#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/InterfaceWindow.h"
#include "platform/Localization.h"
#include "platform/Workspace.h"
#include "service/UpgradeInfo.h"
#include "ui/UpgradeWindow.h"

namespace quilex {

/// Offers a newer version in a panel from the interface file "UpgradeWindowController". Main thread.
class UpgradeWindowController {
 public:
  QUILEX_TEXTS_FILED_UNDER(QuilexHelper);

  /// The workspace must outlive the controller.
  UpgradeWindowController(LoadInterfaceFile loadInterfaceFile, Localize localize, Workspace& workspace);
  UpgradeWindowController(const UpgradeWindowController&) = delete;
  UpgradeWindowController& operator=(const UpgradeWindowController&) = delete;

  /// The offer. The window reads its version when it loads, and its address when the button is pressed.
  std::optional<UpgradeInfo> upgradeInfo;

  /// Loads the panel the first time, brings it to the front and gives it the keyboard. Without the interface file
  /// nothing happens.
  void showWindow();
  void close();

 private:
  void loadWindow();
  void windowDidLoad();
  std::string localized(const char* english, const char* comment) const { return localize_(english, comment); }

  LoadInterfaceFile loadInterfaceFile_;
  Localize localize_;
  Workspace& workspace_;
  std::unique_ptr<UpgradeWindow> panel_;

 public:
  /// Null until the window is loaded.
  PushButton* upgradeButton = nullptr;
  TextField* infoLabel = nullptr;
};

}  // namespace quilex
