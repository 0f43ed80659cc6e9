#include "ui/UpgradeWindowController.h"

#include <utility>

namespace quilex {

UpgradeWindowController::UpgradeWindowController(LoadInterfaceFile load, Localize theLocalize, Workspace& theWorkspace)
    : loadInterfaceFile(std::move(load)), localize(std::move(theLocalize)), workspace(theWorkspace) {}

void UpgradeWindowController::showWindow() {
  if (!panel) {
    loadWindow();
  }
  if (panel) {
    panel->show();
  }
}

void UpgradeWindowController::close() {
  if (panel) {
    panel->close();
  }
}

void UpgradeWindowController::loadWindow() {
  auto content = loadInterfaceFile("UpgradeWindowController");
  if (!content) {
    return;
  }
  panel = std::make_unique<UpgradeWindow>(std::move(content), *this, workspace);
  upgradeButton = panel->panel().button("upgradeButton");
  infoLabel = panel->panel().textField("infoLabel");
  if (upgradeButton != nullptr) {
    upgradeButton->setAction([this] { panel->openUpdate(); });
  }
  windowDidLoad();
}

void UpgradeWindowController::windowDidLoad() {
  panel->panel().setClearBackground();
  panel->panel().setContents("upgrade_back_ground");
  if (infoLabel == nullptr) {
    return;
  }
  if (!upgradeInfo) {
    infoLabel->setStringValue("");
  } else if (!infoLabel->appendHTML(upgradeInfo->exp)) {
    infoLabel->setStringValue(upgradeInfo->exp);
  }
  // In place of the description, which the panel has no room for yet.
  infoLabel->setStringValue(filled(localized("Version: %@", "version"), upgradeInfo ? upgradeInfo->ver : "1.0"));
}

}  // namespace quilex
