#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/MainThread.h"
#include "playback/PlaybackServices.h"
#include "playback/VideoPlayerScreenType.h"

namespace quilex {

/// The wallpaper's windows, one for each screen that is covered, and all of them showing the same player. Main thread.
class WallpaperWindows {
 public:
  /// Reads the settings and makes no window yet. `player` gives the player that the windows show, which must outlive
  /// them.
  WallpaperWindows(const PlaybackServices& services, std::function<VideoPlayer&()> player);

  VideoPlayerScreenType screenType;
  /// The screen that `lonely` uses, as an index into the desktop's screens.
  std::int64_t screenIndex;
  /// Whether the windows stand in front of the desktop icons; takes effect with the next `applyLevelAndOrder`.
  bool isHideDesktopIcon = false;

  /// Replaces all windows by new ones for the screen type, each in its place among the desktop's layers.
  void build();
  void applyLevelAndOrder();
  /// Hides the windows and keeps them.
  void orderOut();
  /// Destroys the windows.
  void clear() { windows_.clear(); }

  /// Handles a click in a window.
  void tapVideoPlayerViewAction() { services_.console.print("tapVideoPlayerViewAction"); }

  /// Whether the windows are for the screens as they are now.
  bool fitScreens() const;
  /// The covered screens; before the windows are built, all screens.
  const std::vector<Screen>& screens() const { return screens_; }
  /// In the order of `screens`.
  const std::vector<std::unique_ptr<WallpaperWindow>>& windows() const { return windows_; }

 private:
  std::unique_ptr<WallpaperWindow> makeWindow(const Screen& screen, const Rect& viewRect);
  void applyLevelAndOrder(WallpaperWindow& window) const;

  [[no_unique_address]] MainThread mainThread_;
  const PlaybackServices& services_;
  std::function<VideoPlayer&()> player_;
  std::vector<Screen> screens_;
  std::vector<std::unique_ptr<WallpaperWindow>> windows_;
};

}  // namespace quilex
