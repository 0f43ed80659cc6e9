#include "agent/AppDelegate.h"

#include <chrono>
#include <utility>

namespace quilex {

AppDelegate::AppDelegate(Services theServices) : services(std::move(theServices)) {}

void AppDelegate::applicationDidFinishLaunching() {
  services.videoPlayerManager().buildWindows();
  plays = true;
  services.statusBarManager().buildStatusMenu();
  wake.emplace(services.workspace.observeWake([this] { didWakeNotification(); }));
  auto& autolaunch = services.preferences().autolaunch;
  login.emplace(autolaunch.observe([this](bool starts) { services.workspace.setStartsAtLogin(starts); }));
  services.workspace.setStartsAtLogin(autolaunch.get());
  checkUpdates(Check::automatic);
}

void AppDelegate::applicationWillTerminate() {
  if (!std::exchange(terminated, true)) {
    if (plays) {
      services.videoPlayerManager().willTerminate();
    }
    services.notificationCenter.post(kTermination);
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

// The update check

void AppDelegate::checkUpdates(Check check) {
  services.requestUpgradeInfo(
      [this, check](const std::optional<UpgradeInfo>& info) { updateCheckCompletion(info, check); });
}

void AppDelegate::updateCheckCompletion(const std::optional<UpgradeInfo>& info, Check check) {
  outcomes.push_back({info, check});
  mainQueue.emplace(services.runLoop.after(std::chrono::milliseconds(0), [this] {
    for (; !outcomes.empty(); outcomes.pop_front()) {
      show(outcomes.front());
    }
  }));
}

void AppDelegate::show(const Outcome& outcome) {
  if (outcome.info && services.appInfo().version() < outcome.info->ver) {
    offer(*outcome.info);
  } else if (outcome.check == Check::manual) {
    showUpToDate();
  }
}

void AppDelegate::offer(const UpgradeInfo& info) {
  if (upgradeWC) {
    upgradeWC->close();
  }
  upgradeWC =
      std::make_unique<UpgradeWindowController>(services.loadInterfaceFile, services.localize, services.workspace);
  upgradeWC->upgradeInfo = info;
  upgradeWC->showWindow();
}

void AppDelegate::showUpToDate() {
  if (!upToDateWindowController) {
    upToDateWindowController.emplace(services.loadInterfaceFile);
  }
  CustomAlertWindowController& alert = *upToDateWindowController;
  if (!alert.isWindowLoaded()) {
    alert.loadWindow();
  }
  if (alert.titleLabel != nullptr) {
    alert.titleLabel->setStringValue(localized("You're up to date", "updated"));
  }
  if (alert.infoLabel != nullptr) {
    alert.infoLabel->setStringValue(
        filled(localized("%@ is currently the newest version", "fmt"), services.appInfo().displayVersion()));
  }
  alert.showWindow();
}

bool AppDelegate::isPlayingInTheOpen() const {
  const Preferences& preferences = services.preferences();
  return preferences.isOpenPlayer.get() && preferences.isPlaying.get();
}

}  // namespace quilex
