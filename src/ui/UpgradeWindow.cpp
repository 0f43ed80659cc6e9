#include "ui/UpgradeWindow.h"

#include <utility>

#include "service/URL.h"
#include "ui/UpgradeWindowController.h"

namespace quilex {

UpgradeWindow::UpgradeWindow(std::unique_ptr<InterfaceWindow> panel, const UpgradeWindowController& controller,
                             Workspace& workspace)
    : panel_(std::move(panel)), controller_(controller), workspace_(workspace) {
  if (PushButton* button = panel_->button("closeButton")) {
    button->setAction([this] { performClose(); });
  }
}

void UpgradeWindow::show() {
  panel_->show(canBecomeKeyWindow() ? InterfaceWindow::Keyboard::comes : InterfaceWindow::Keyboard::stays);
}

void UpgradeWindow::openUpdate() {
  if (controller_.upgradeInfo) {
    if (const auto url = URL::parse(controller_.upgradeInfo->url)) {
      workspace_.openURL(url->string());
    }
  }
  close();
}

void UpgradeWindow::performClose() {
  close();
}

}  // namespace quilex
