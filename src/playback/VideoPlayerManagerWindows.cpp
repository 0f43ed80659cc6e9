#include "playback/PlayerView.h"
#include "playback/ScreenLayout.h"
#include "playback/VideoPlayerManager.h"

namespace quilex {

void VideoPlayerManager::buildWindows() {
  coveredScreens = chooseScreens(screenType, screenIndex, services.windowServer.screens());
  const auto frames = playerViewFrames(screenType, coveredScreens);
  windows.clear();
  for (std::size_t index = 0; index < coveredScreens.size(); ++index) {
    windows.push_back(makeWindow(coveredScreens[index], frames[index]));
    applyLevelAndOrder(*windows.back());
  }
  if (!services.preferences.isOpenPlayer.get()) {
    close();
    return;
  }
  applyLevelAndOrder();
  player().play();
  syncSign();
  if (!services.preferences.isPlaying.get()) {
    services.preferences.isPlaying.set(true);
  }
}

std::unique_ptr<WallpaperWindow> VideoPlayerManager::makeWindow(const Screen& screen, const Rect& viewFrame) {
  auto window = services.windowServer.makeWallpaperWindow(screen);
  auto view = std::make_unique<PlayerView>(viewFrame, services.console);
  view->player = &player();
  view->videoGravity = VideoGravity::resizeAspectFill;
  view->controlsStyle = ControlsStyle::none;
  window->setContentView(std::move(view), [this] { tapVideoPlayerViewAction(); });
  return window;
}

void VideoPlayerManager::relayout() {
  for (const auto& window : windows) {
    window->orderOut();
  }
  windows.clear();
  buildWindows();
}

void VideoPlayerManager::applyLevelAndOrder(WallpaperWindow& window) const {
  window.setLevel(WindowLevel::desktopIcon);
  isHideDesktopIcon ? window.orderFront() : window.orderBack();
}

void VideoPlayerManager::applyLevelAndOrder() {
  for (const auto& window : windows) {
    applyLevelAndOrder(*window);
  }
}

void VideoPlayerManager::setHideDesktopIcon(bool hide) {
  isHideDesktopIcon = hide;
  if (services.preferences.isOpenPlayer.get()) {
    applyLevelAndOrder();
  }
}

void VideoPlayerManager::screensChanged() {
  if (services.preferences.isOpenPlayer.get() && needsRelayout(coveredScreens, services.windowServer.screens())) {
    relayout();
  }
}

void VideoPlayerManager::activeSpaceDidChange() {
  setHideDesktopIcon(isHideDesktopIcon);
}

std::optional<std::int64_t> VideoPlayerManager::valueForKey(std::string_view key) const {
  if (key == "screenType") {
    return static_cast<std::int64_t>(screenType);
  }
  if (key == "screenIndex") {
    return screenIndex;
  }
  return std::nullopt;
}

void VideoPlayerManager::changeMonitorArrange(std::int64_t raw) {
  screenType = screenTypeOnChange(raw);
  relayout();
}

void VideoPlayerManager::changeScreenIndex(std::int64_t index) {
  screenType = VideoPlayerScreenType::lonely;
  screenIndex = index;
  relayout();
}

}  // namespace quilex
