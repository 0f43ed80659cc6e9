#include "ui/UpgradeWindow.h"

#include <utility>

#include "service/URL.h"
#include "ui/UpgradeWindowController.h"

namespace quilex {

UpgradeWindow::UpgradeWindow(std::unique_ptr<InterfaceWindow> panel, const UpgradeWindowController& windowController,
                             Workspace& theWorkspace)
    : content_(std::move(panel)), controller_(windowController), workspace_(theWorkspace) {
  if (PushButton* button = content_->button("closeButton")) {
    button->setAction([this] { performClose(); });
  }
}

void UpgradeWindow::show() {
  content_->show(canBecomeKeyWindow() ? InterfaceWindow::Keyboard::comes : InterfaceWindow::Keyboard::stays);
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
