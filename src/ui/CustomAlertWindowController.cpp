#include "ui/CustomAlertWindowController.h"

#include <utility>

namespace quilex {

CustomAlertWindowController::CustomAlertWindowController(LoadInterfaceFile load) : loadInterfaceFile(std::move(load)) {}

void CustomAlertWindowController::loadWindow() {
  window = loadInterfaceFile("CustomAlertWindowController");
  if (window) {
    titleLabel = window->textField("titleLabel");
    infoLabel = window->textField("infoLabel");
    windowDidLoad();
  }
}

void CustomAlertWindowController::windowDidLoad() {
  if (PushButton* button = window->button("okButton")) {
    button->setAction([this] { ok(); });
  }
  for (const auto button :
       {StandardWindowButton::miniaturize, StandardWindowButton::fullScreen, StandardWindowButton::zoom}) {
    window->hideStandardButton(button);
  }
}

void CustomAlertWindowController::showWindow() {
  if (window) {
    window->show(InterfaceWindow::Keyboard::comes);
  }
}

void CustomAlertWindowController::ok() {
  window->close();
}

}  // namespace quilex
