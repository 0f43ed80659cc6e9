#include "playback/WallpaperWindows.h"

#include <utility>

#include "playback/PlayerView.h"
#include "playback/ScreenLayout.h"

namespace quilex {

WallpaperWindows::WallpaperWindows(const PlaybackServices& services, std::function<VideoPlayer&()> player)
    : screenType(screenTypeAtStart(services.preferences.monitorArrange.get())),
      screenIndex(services.preferences.screenIndex.get()),
      services_(services),
      player_(std::move(player)),
      screens_(services.windowServer.screens()) {}

void WallpaperWindows::build() {
  mainThread_.check();
  windows_.clear();
  screens_ = chooseScreens(screenType, screenIndex, services_.windowServer.screens());
  const auto rects = playerViewRects(screenType, screens_);
  for (std::size_t index = 0; index < screens_.size(); ++index) {
    windows_.push_back(makeWindow(screens_[index], rects[index]));
    applyLevelAndOrder(*windows_.back());
  }
}

std::unique_ptr<WallpaperWindow> WallpaperWindows::makeWindow(const Screen& screen, const Rect& viewRect) {
  auto window = services_.windowServer.makeWallpaperWindow(screen);
  auto view = std::make_unique<PlayerView>(viewRect, services_.console);
  view->player = &player_();
  view->videoGravity = VideoGravity::resizeAspectFill;
  view->controlsStyle = ControlsStyle::none;
  window->setContentView(std::move(view), [this] { tapVideoPlayerViewAction(); });
  return window;
}

void WallpaperWindows::applyLevelAndOrder(WallpaperWindow& window) const {
  window.setLevel(WindowLevel::desktopIcon);
  isHideDesktopIcon ? window.orderFront() : window.orderBack();
}

void WallpaperWindows::applyLevelAndOrder() {
  mainThread_.check();
  for (const auto& window : windows_) {
    applyLevelAndOrder(*window);
  }
}

void WallpaperWindows::orderOut() {
  for (const auto& window : windows_) {
    window->orderOut();
  }
}

bool WallpaperWindows::fitScreens() const {
  return !needsRelayout(screens_, services_.windowServer.screens());
}

}  // namespace quilex
