#include "ui/UpgradeWindowController.h"

#include <utility>

namespace quilex {

UpgradeWindowController::UpgradeWindowController(LoadInterfaceFile loadInterfaceFile, Localize localize,
                                                 Workspace& workspace)
    : loadInterfaceFile_(std::move(loadInterfaceFile)), localize_(std::move(localize)), workspace_(workspace) {}

void UpgradeWindowController::showWindow() {
  if (!panel_) {
    loadWindow();
  }
  if (panel_) {
    panel_->show();
  }
}

void UpgradeWindowController::close() {
  if (panel_) {
    panel_->close();
  }
}

void UpgradeWindowController::loadWindow() {
  auto content = loadInterfaceFile_("UpgradeWindowController");
  if (!content) {
    return;
  }
  panel_ = std::make_unique<UpgradeWindow>(std::move(content), *this, workspace_);
  upgradeButton = panel_->panel().button("upgradeButton");
  infoLabel = panel_->panel().textField("infoLabel");
  if (upgradeButton != nullptr) {
    upgradeButton->setAction([this] { panel_->openUpdate(); });
  }
  windowDidLoad();
}

void UpgradeWindowController::windowDidLoad() {
  panel_->panel().setClearBackground();
  panel_->panel().setContents("upgrade_back_ground");
  if (infoLabel == nullptr) {
    return;
  }
  if (!upgradeInfo) {
    infoLabel->setStringValue("");
  } else if (!infoLabel->appendHTML(upgradeInfo->exp)) {
    infoLabel->setStringValue(upgradeInfo->exp);
  }
  // Replaces the description, for which the panel has no room yet.
  infoLabel->setStringValue(filled(localized("Version: %@", "version"), upgradeInfo ? upgradeInfo->ver : "1.0"));
}

}  // namespace quilex
