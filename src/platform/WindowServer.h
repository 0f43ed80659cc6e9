#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "platform/Geometry.h"
#include "platform/VideoView.h"

namespace quilex {

/// A monitor. Its frame identifies it.
struct Screen {
  std::string name;
  /// In the desktop's global space.
  Rect frame;
};

enum class WindowLevel { desktopIcon };

/// A borderless window that covers one screen on every workspace and never takes the focus. Hidden at first; destroying
/// it removes it from the screen. Main thread.
class WallpaperWindow {
 public:
  virtual ~WallpaperWindow() = default;

  /// Puts the view into the window. The view gets each press of a pointer button inside it; `click` is called for each
  /// completed click of the primary button.
  virtual void setContentView(std::unique_ptr<VideoView> view, std::function<void()> click) = 0;
  /// For window systems in which a window's level can change; others ignore it.
  virtual void setLevel(WindowLevel level) = 0;
  /// Shows the window behind or in front of all other windows of its level. A window without a frame appears with its
  /// first one.
  virtual void orderBack() = 0;
  virtual void orderFront() = 0;
  /// Hides the window.
  virtual void orderOut() = 0;
};

/// The desktop's monitors and windows. Main thread.
class WindowServer {
 public:
  virtual ~WindowServer() = default;

  /// The monitors that are on, in the desktop's order.
  virtual std::vector<Screen> screens() const = 0;
  virtual std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) = 0;

  /// Notifies when monitors came, went or changed, at most once per turn of the run loop.
  [[nodiscard]] virtual Disposable observeScreens(std::function<void()> handler) = 0;
  /// Notifies when the agent's windows as a whole were fully covered by other windows, or became visible again; not
  /// when the agent itself showed, hid or ordered them.
  [[nodiscard]] virtual Disposable observeOcclusion(std::function<void()> handler) = 0;
  /// Notifies when the agent's windows as a whole become impossible to see (true) or possible again (false): other
  /// windows cover them, or there is no monitor. At first they can be seen. Unlike `observeOcclusion` this also follows
  /// what the agent's own ordering brings about.
  [[nodiscard]] virtual Disposable observeUnseen(std::function<void(bool isUnseen)> handler) = 0;
  /// Notifies when another workspace became the active one; never on desktops that do not announce it.
  [[nodiscard]] virtual Disposable observeActiveSpace(std::function<void()> handler) = 0;
};

}  // namespace quilex
