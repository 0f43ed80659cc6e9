#include "playback/PlayerView.h"
#include "playback/ScreenLayout.h"
#include "playback/VideoPlayerManager.h"

namespace quilex {

void VideoPlayerManager::buildWindows() {
  coveredScreens_ = chooseScreens(screenType, screenIndex, services_.windowServer.screens());
  const auto frames = playerViewFrames(screenType, coveredScreens_);
  windows_.clear();
  for (std::size_t index = 0; index < coveredScreens_.size(); ++index) {
    windows_.push_back(makeWindow(coveredScreens_[index], frames[index]));
    applyLevelAndOrder(*windows_.back());
  }
  if (!services_.preferences.isOpenPlayer.get()) {
    close();
    return;
  }
  applyLevelAndOrder();
  player().play();
  syncSign();
  if (!services_.preferences.isPlaying.get()) {
    services_.preferences.isPlaying.set(true);
  }
}

std::unique_ptr<WallpaperWindow> VideoPlayerManager::makeWindow(const Screen& screen, const Rect& viewFrame) {
  auto window = services_.windowServer.makeWallpaperWindow(screen);
  auto view = std::make_unique<PlayerView>(viewFrame, services_.console);
  view->player = &player();
  view->videoGravity = VideoGravity::resizeAspectFill;
  view->controlsStyle = ControlsStyle::none;
  window->setContentView(std::move(view), [this] { tapVideoPlayerViewAction(); });
  return window;
}

void VideoPlayerManager::relayout() {
  for (const auto& window : windows_) {
    window->orderOut();
  }
  windows_.clear();
  buildWindows();
}

void VideoPlayerManager::applyLevelAndOrder(WallpaperWindow& window) const {
  window.setLevel(WindowLevel::desktopIcon);
  isHideDesktopIcon ? window.orderFront() : window.orderBack();
}

void VideoPlayerManager::applyLevelAndOrder() {
  for (const auto& window : windows_) {
    applyLevelAndOrder(*window);
  }
}

void VideoPlayerManager::setHideDesktopIcon(bool hide) {
  isHideDesktopIcon = hide;
  if (services_.preferences.isOpenPlayer.get()) {
    applyLevelAndOrder();
  }
}

void VideoPlayerManager::screensChanged() {
  if (services_.preferences.isOpenPlayer.get() && needsRelayout(coveredScreens_, services_.windowServer.screens())) {
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
