#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quilex {

/// A text in a window; the window owns it. Main thread.
class TextField {
 public:
  TextField() = default;
  virtual ~TextField() = default;
  TextField(const TextField&) = delete;
  TextField& operator=(const TextField&) = delete;

  /// Makes this UTF-8 text the whole content, as plain text; control characters show as a replacement sign, and
  /// a text of more than some thousand characters ends there.
  virtual void setStringValue(const std::string& text) = 0;
  /// Appends a document's text to the content. Nothing that it refers to is loaded, and of a long one only the
  /// beginning is read, so that it takes no noticeable time. False, and nothing changes, when there is no text in it or
  /// the field is for plain text.
  virtual bool appendHTML(const std::string& html) = 0;
};

/// A push button in a window; the window owns it. Main thread.
class PushButton {
 public:
  PushButton() = default;
  virtual ~PushButton() = default;
  PushButton(const PushButton&) = delete;
  PushButton& operator=(const PushButton&) = delete;

  /// What pressing the button does, from now on; it may close the window but not destroy it.
  virtual void setAction(std::function<void()> action) = 0;
};

/// The buttons of a title bar besides the one that closes the window.
enum class StandardWindowButton { miniaturize = 1, zoom = 2, fullScreen = 7 };

/// A window made from an interface file, hidden at first. Destroying it closes it. Escape and the user's own closing
/// hide it. Main thread.
class InterfaceWindow {
 public:
  InterfaceWindow() = default;
  virtual ~InterfaceWindow() = default;
  InterfaceWindow(const InterfaceWindow&) = delete;
  InterfaceWindow& operator=(const InterfaceWindow&) = delete;

  /// The text or the button of that name; none when the file has no such thing.
  virtual TextField* textField(const std::string& name) = 0;
  virtual PushButton* button(const std::string& name) = 0;

  /// Takes a button off the title bar.
  virtual void hideStandardButton(StandardWindowButton button) = 0;
  /// Makes the window transparent but for its content.
  virtual void setClearBackground() = 0;
  /// Draws the bundle's image of that name behind the content, over all of the window. An image that is missing leaves
  /// the window as it was.
  virtual void setContents(const std::string& imageName) = 0;

  /// Shows the window in front of all others, and gives it the keyboard if it is to have it.
  enum class Keyboard { stays, comes };
  virtual void show(Keyboard keyboard) = 0;
  virtual void close() = 0;
};

/// Makes the window of the bundle's interface file of that name; nothing, after a line on standard error, when the file
/// is missing or is no such file.
using LoadInterfaceFile = std::function<std::unique_ptr<InterfaceWindow>(const std::string& name)>;

}  // namespace quilex
