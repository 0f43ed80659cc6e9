#include "ui/CustomAlertWindowController.h"

#include <utility>

namespace quilex {

CustomAlertWindowController::CustomAlertWindowController(LoadInterfaceFile loadInterfaceFile)
    : loadInterfaceFile_(std::move(loadInterfaceFile)) {}

void CustomAlertWindowController::loadWindow() {
  window_ = loadInterfaceFile_("CustomAlertWindowController");
  if (window_) {
    titleLabel = window_->textField("titleLabel");
    infoLabel = window_->textField("infoLabel");
    windowDidLoad();
  }
}

void CustomAlertWindowController::windowDidLoad() {
  if (PushButton* button = window_->button("okButton")) {
    button->setAction([this] { ok(); });
  }
  for (const auto button :
       {StandardWindowButton::miniaturize, StandardWindowButton::fullScreen, StandardWindowButton::zoom}) {
    window_->hideStandardButton(button);
  }
}

void CustomAlertWindowController::showWindow() {
  if (window_) {
    window_->show(InterfaceWindow::Keyboard::comes);
  }
}

void CustomAlertWindowController::ok() {
  window_->close();
}

}  // namespace quilex
