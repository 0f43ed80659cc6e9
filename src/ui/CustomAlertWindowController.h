#pragma once

#include <memory>

#include "platform/InterfaceWindow.h"

namespace quilex {

/// A small window with a headline, a line of explanation and a button, made from the interface file
/// "CustomAlertWindowController". It can be shown any number of times. Main thread.
class CustomAlertWindowController {
 public:
  explicit CustomAlertWindowController(LoadInterfaceFile load);

  /// False until `loadWindow` has found the interface file.
  bool isWindowLoaded() const { return window_ != nullptr; }
  void loadWindow();
  /// Brings the window to the front and gives it the keyboard; nothing happens without one.
  void showWindow();
  /// The button's action.
  void ok();

 private:
  void windowDidLoad();

  LoadInterfaceFile loadInterfaceFile_;
  std::unique_ptr<InterfaceWindow> window_;

 public:
  /// In the window, once it is loaded.
  TextField* titleLabel = nullptr;
  TextField* infoLabel = nullptr;
};

}  // namespace quilex
