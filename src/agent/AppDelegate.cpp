#include "agent/AppDelegate.h"

#include <chrono>
#include <utility>

namespace quilex {

AppDelegate::AppDelegate(Services services) : services_(std::move(services)) {}

void AppDelegate::applicationDidFinishLaunching() {
  mainThread_.check();
  services_.videoPlayerManager.buildWindows();
  launched_ = true;
  services_.statusBarManager.buildStatusMenu();
  wake_.emplace(services_.workspace.observeWake([this] { didWakeNotification(); }));
  auto& autolaunch = services_.preferences.autolaunch;
  login_.emplace(autolaunch.observe([this](bool starts) { services_.workspace.setStartsAtLogin(starts); }));
  services_.workspace.setStartsAtLogin(autolaunch.get());
  checkUpdates(Check::automatic);
}

void AppDelegate::applicationWillTerminate() {
  mainThread_.check();
  if (!std::exchange(terminated_, true)) {
    if (launched_) {
      services_.videoPlayerManager.willTerminate();
    }
    services_.notificationCenter.post(kTermination);
  }
}

void AppDelegate::applicationDidChangeOcclusionState() {
  if (isPlayingInTheOpen()) {
    services_.videoPlayerManager.playCurrent();
  }
}

void AppDelegate::applicationDidChangeScreenParameters() {
  services_.videoPlayerManager.screensChanged();
  services_.statusBarManager.removeStatusMenu();
  services_.statusBarManager.buildStatusMenu();
}

void AppDelegate::applicationDidResignActive() {
  services_.notificationCenter.setSuspended(false);
}

void AppDelegate::didWakeNotification() {
  if (isPlayingInTheOpen()) {
    VideoPlayerManager& manager = services_.videoPlayerManager;
    manager.applyLevelAndOrder();
    manager.player().play();
    manager.syncSign();
  }
}

// The update check

void AppDelegate::checkUpdates(Check check) {
  services_.upgradeInfoSource.requestUpgradeInfo(
      [this, check](const std::optional<UpgradeInfo>& info) { updateCheckCompletion(info, check); });
}

void AppDelegate::updateCheckCompletion(const std::optional<UpgradeInfo>& info, Check check) {
  mainThread_.check();
  answers_.push_back({info, check});
  mainQueue_.emplace(services_.runLoop.after(std::chrono::milliseconds(0), [this] {
    for (; !answers_.empty(); answers_.pop_front()) {
      show(answers_.front());
    }
  }));
}

void AppDelegate::show(const Answer& answer) {
  if (answer.info && services_.appInfo.version() < answer.info->ver) {
    offer(*answer.info);
  } else if (answer.check == Check::manual) {
    showUpToDate();
  }
}

void AppDelegate::offer(const UpgradeInfo& info) {
  if (upgradeWC_) {
    upgradeWC_->close();
  }
  upgradeWC_ =
      std::make_unique<UpgradeWindowController>(services_.loadInterfaceFile, services_.localize, services_.workspace);
  upgradeWC_->upgradeInfo = info;
  upgradeWC_->showWindow();
}

void AppDelegate::showUpToDate() {
  if (!upToDateWindowController_) {
    upToDateWindowController_.emplace(services_.loadInterfaceFile);
  }
  CustomAlertWindowController& alert = *upToDateWindowController_;
  if (!alert.isWindowLoaded()) {
    alert.loadWindow();
  }
  if (alert.titleLabel != nullptr) {
    alert.titleLabel->setStringValue(localized("You're up to date", "updated"));
  }
  if (alert.infoLabel != nullptr) {
    alert.infoLabel->setStringValue(
        filled(localized("%@ is currently the newest version", "fmt"), services_.appInfo.displayVersion()));
  }
  alert.showWindow();
}

bool AppDelegate::isPlayingInTheOpen() const {
  const Preferences& preferences = services_.preferences;
  return preferences.isOpenPlayer.get() && preferences.isPlaying.get();
}

}  // namespace quilex
