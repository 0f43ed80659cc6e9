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

/// Offers a newer version in a panel made from the interface file "UpgradeWindowController". Main thread.
class UpgradeWindowController {
 public:
  QUILEX_TEXTS_FILED_UNDER(QuilexHelper);

  /// The workspace must outlive the controller.
  UpgradeWindowController(LoadInterfaceFile load, Localize localize, Workspace& workspace);
  UpgradeWindowController(const UpgradeWindowController&) = delete;
  UpgradeWindowController& operator=(const UpgradeWindowController&) = delete;

  /// The offer, which is read once, when the window loads; the address is read when the button is pressed.
  std::optional<UpgradeInfo> upgradeInfo;

  /// Brings the panel to the front and gives it the keyboard, loading it first if it is not; nothing happens without
  /// the interface file.
  void showWindow();
  void close();

  /// None until the window is loaded.
  UpgradeWindow* window() { return panel_.get(); }

 private:
  void loadWindow();
  void windowDidLoad();
  std::string localized(const char* english, const char* comment) const { return localize_(english, comment); }

  LoadInterfaceFile loadInterfaceFile_;
  Localize localize_;
  Workspace& workspace_;
  std::unique_ptr<UpgradeWindow> panel_;

 public:
  /// In the window, once it is loaded.
  PushButton* upgradeButton = nullptr;
  TextField* infoLabel = nullptr;
};

}  // namespace quilex
