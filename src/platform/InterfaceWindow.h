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

  /// Makes this UTF-8 text the whole content, as plain text. Control characters become replacement characters, and a
  /// very long text is cut.
  virtual void setStringValue(const std::string& text) = 0;
  /// Appends the text of an HTML document to the content. Loads nothing that the document refers to, and reads only the
  /// beginning of a long one, which would take too long. Returns false and changes nothing if the document has no text
  /// or the field is for plain text.
  virtual bool appendHTML(const std::string& html) = 0;
};

/// A push button in a window; the window owns it. Main thread.
class PushButton {
 public:
  PushButton() = default;
  virtual ~PushButton() = default;
  PushButton(const PushButton&) = delete;
  PushButton& operator=(const PushButton&) = delete;

  /// Sets what a press does. The action may close the window but not destroy it.
  virtual void setAction(std::function<void()> action) = 0;
};

/// The buttons of a title bar, except the one that closes the window.
enum class StandardWindowButton { miniaturize = 1, zoom = 2, fullScreen = 7 };

/// A window made from an interface file, hidden at first. Escape and the title bar hide it; destroying it closes it.
/// Main thread.
class InterfaceWindow {
 public:
  InterfaceWindow() = default;
  virtual ~InterfaceWindow() = default;
  InterfaceWindow(const InterfaceWindow&) = delete;
  InterfaceWindow& operator=(const InterfaceWindow&) = delete;

  /// The text or the button of that name; null if the file has none.
  virtual TextField* textField(const std::string& name) = 0;
  virtual PushButton* button(const std::string& name) = 0;

  /// Removes a button from the title bar.
  virtual void hideStandardButton(StandardWindowButton button) = 0;
  /// Makes the window transparent where it has no content.
  virtual void setClearBackground() = 0;
  /// Draws the bundle's image of that name behind the content, over the whole window. Nothing changes if the image is
  /// missing.
  virtual void setContents(const std::string& imageName) = 0;

  /// Whether a window that is shown takes the keyboard.
  enum class Keyboard { stays, comes };
  /// Shows the window in front of all others.
  virtual void show(Keyboard keyboard) = 0;
  virtual void close() = 0;
};

/// Makes the window of the bundle's interface file of that name. Null, after a line on standard error, if the file is
/// missing or broken.
using LoadInterfaceFile = std::function<std::unique_ptr<InterfaceWindow>(const std::string& name)>;

}  // namespace quilex
