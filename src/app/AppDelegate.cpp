#include "app/AppDelegate.h"

#include <utility>

namespace quilex {

AppDelegate::AppDelegate(Services theServices) : services(std::move(theServices)) {}

void AppDelegate::applicationDidFinishLaunching() {
  services.videoPlayerManager().buildWindows();
  services.statusBarManager().buildStatusMenu();
  wake.emplace(services.workspace.observeWake([this] { didWakeNotification(); }));
}

void AppDelegate::applicationWillTerminate() {
  if (!std::exchange(terminated, true)) {
    services.notificationCenter.post("com.dravo.quilex.mac.ter");
  }
}

void AppDelegate::applicationDidChangeOcclusionState() {
  if (isPlayingInTheOpen()) {
    services.videoPlayerManager().playCurrent();
  }
}

void AppDelegate::applicationDidChangeScreenParameters() {
  services.videoPlayerManager().screensChanged();
  services.statusBarManager().removeStatusMenu();
  services.statusBarManager().buildStatusMenu();
}

void AppDelegate::applicationDidResignActive() {
  services.notificationCenter.setSuspended(false);
}

void AppDelegate::didWakeNotification() {
  if (isPlayingInTheOpen()) {
    VideoPlayerManager& manager = services.videoPlayerManager();
    manager.applyLevelAndOrder();
    manager.player().play();
    manager.syncSign();
  }
}

bool AppDelegate::isPlayingInTheOpen() const {
  const Preferences& preferences = services.preferences();
  return preferences.isOpenPlayer.get() && preferences.isPlaying.get();
}

}  // namespace quilex
