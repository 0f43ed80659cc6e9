#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "platform/Geometry.h"
#include "platform/VideoView.h"

namespace quilex {

/// A monitor. Two screens are told apart by their frames.
struct Screen {
  std::string name;
  /// Place and size in the desktop's global space.
  Rect frame;
};

enum class WindowLevel { desktopIcon };

/// A borderless window that covers one screen on every workspace and never takes the focus; made hidden. Destroying it
/// removes it from the screen. Main thread.
class WallpaperWindow {
 public:
  virtual ~WallpaperWindow() = default;

  /// Puts the view into the window. A press of a pointer button inside it reaches the view; `click` is told of each
  /// completed click of the primary button.
  virtual void setContentView(std::unique_ptr<VideoView> view, std::function<void()> click) = 0;
  /// For window systems with numbered levels; where windows are made for the desktop's background, it does nothing.
  virtual void setLevel(WindowLevel level) = 0;
  /// Shows the window behind, respectively in front of, all other windows of its level. A window that has no frame to
  /// show yet appears with its first one.
  virtual void orderBack() = 0;
  virtual void orderFront() = 0;
  /// Hides the window.
  virtual void orderOut() = 0;
};

/// The desktop's monitors and windows. Main thread.
class WindowServer {
 public:
  virtual ~WindowServer() = default;

  /// The monitors that are on, in the desktop's order; none when all are off.
  virtual std::vector<Screen> screens() const = 0;
  virtual std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) = 0;

  /// Tells that monitors came, went or changed; once per turn of the run loop however many changes there were.
  [[nodiscard]] virtual Disposable observeScreens(std::function<void()> handler) = 0;
  /// Tells that the agent's windows, taken together, came to be fully covered by other windows, or visible again. Not
  /// told of what the agent's own showing, hiding and ordering of them brings about.
  [[nodiscard]] virtual Disposable observeOcclusion(std::function<void()> handler) = 0;
  /// Tells that another workspace became the active one. Never, on desktops that do not say so.
  [[nodiscard]] virtual Disposable observeActiveSpace(std::function<void()> handler) = 0;
};

}  // namespace quilex
