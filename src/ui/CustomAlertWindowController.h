#pragma once

#include <memory>

#include "platform/InterfaceWindow.h"

namespace quilex {

/// An alert with a headline, a line of explanation and a button, from the interface file "CustomAlertWindowController".
/// It can be shown again and again. Main thread.
class CustomAlertWindowController {
 public:
  explicit CustomAlertWindowController(LoadInterfaceFile loadInterfaceFile);

  /// False until `loadWindow` has found the interface file.
  bool isWindowLoaded() const { return window_ != nullptr; }
  void loadWindow();
  /// Brings the window, if there is one, to the front and gives it the keyboard.
  void showWindow();
  /// The button's action.
  void ok();

 private:
  void windowDidLoad();

  LoadInterfaceFile loadInterfaceFile_;
  std::unique_ptr<InterfaceWindow> window_;

 public:
  /// Null until the window is loaded.
  TextField* titleLabel = nullptr;
  TextField* infoLabel = nullptr;
};

}  // namespace quilex
