#include "ui/UpgradeWindow.h"

#include <utility>

#include "service/URL.h"
#include "ui/UpgradeWindowController.h"

namespace quilex {

UpgradeWindow::UpgradeWindow(std::unique_ptr<InterfaceWindow> panel, const UpgradeWindowController& windowController,
                             Workspace& theWorkspace)
    : content(std::move(panel)), controller(windowController), workspace(theWorkspace) {
  if (PushButton* button = content->button("closeButton")) {
    button->setAction([this] { performClose(); });
  }
}

void UpgradeWindow::show() {
  content->show(canBecomeKeyWindow() ? InterfaceWindow::Keyboard::comes : InterfaceWindow::Keyboard::stays);
}

void UpgradeWindow::openUpdate() {
  if (controller.upgradeInfo) {
    if (const auto url = URL::parse(controller.upgradeInfo->url)) {
      workspace.openURL(url->string());
    }
  }
  close();
}

void UpgradeWindow::performClose() {
  close();
}

}  // namespace quilex
