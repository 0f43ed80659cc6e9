#include "playback/WallpaperWindows.h"

#include <utility>

#include "playback/PlayerView.h"
#include "playback/ScreenLayout.h"

namespace quilex {

WallpaperWindows::WallpaperWindows(VideoPlayerScreenType type, std::int64_t index, Services services)
    : screenType(type),
      screenIndex(index),
      services_(std::move(services)),
      screens_(services_.windowServer.screens()) {}

void WallpaperWindows::build() {
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
  view->player = &services_.player();
  view->videoGravity = VideoGravity::resizeAspectFill;
  view->controlsStyle = ControlsStyle::none;
  window->setContentView(std::move(view), services_.clicked);
  return window;
}

void WallpaperWindows::applyLevelAndOrder(WallpaperWindow& window) const {
  window.setLevel(WindowLevel::desktopIcon);
  isHideDesktopIcon ? window.orderFront() : window.orderBack();
}

void WallpaperWindows::applyLevelAndOrder() {
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
