#include "ui/StatusBarManager.h"

#include <cstddef>
#include <utility>

namespace quilex {

namespace {

constexpr const char* kMainApplication = "com.dravo.quilex.macOS";

}  // namespace

StatusBarManager::StatusBarManager(Services services)
    : services_(std::move(services)),
      openVideoTitle_(localized("Open Video Wallpaper", "start/stop Video Desktop")),
      closeVideoTitle_(localized("Close Video Wallpaper", "start/stop Video Desktop")),
      playTitle_(localized("Play", "play/pause")),
      pauseTitle_(localized("Pause", "pause play")) {}

StatusBarManager::~StatusBarManager() {
  observersDispose_.clear();
}

void StatusBarManager::buildStatusMenu() {
  screenObservations_.push_back(services_.windowServer.observeScreens([this] { screenDidChanged(); }));
  observersDispose_.push_back(
      services_.preferences.isPlaying.observe([this](bool playing) { isPlayingChanged(playing); }));
  statusItem().setTemplateImage("quilex_statusBar");
  if (!muteItem_) {
    makeItems();
  }
  markArrangement();

  const auto version = std::make_shared<MenuAction>(services_.displayVersion);
  version->setEnabled(false);
  std::vector<MenuItem> items{
      makeAction(localized("Main Window", "use to show main window"), &StatusBarManager::showMainWindowMenuItemAction),
      version,
      makeAction(localized("Check for Updates...", "Check Update"), &StatusBarManager::checkUpdates),
      MenuSeparator(),
      toggleVideoDestopItem_,
      playPauseItem_,
      hideDesktopIconItem_,
      muteItem_,
      MenuSeparator()};
  if (services_.windowServer.screens().size() > 1) {
    items.emplace_back(std::make_shared<Menu>(localized("Screen", "title"),
                                              std::vector<MenuItem>{comboItem_, dynamicItem_, lonelyMenu_}));
  }
  items.emplace_back(MenuSeparator());
  items.emplace_back(makeAction(localized("Quit", "quit application"), &StatusBarManager::quitMenuItemAction, "q"));
  statusItem().setMenu(std::make_shared<Menu>("", std::move(items)));
  observeSettings();
}

void StatusBarManager::observeSettings() {
  Preferences& preferences = services_.preferences;
  observersDispose_.push_back(preferences.mute.observe([this](bool mute) { muteItem_->setMark(mute); }));
  observersDispose_.push_back(
      preferences.monitorArrange.observe([this](std::int64_t raw) { monitorArrangeChanged(raw); }));
  observersDispose_.push_back(
      preferences.screenIndex.observe([this](std::int64_t index) { screenIndexChanged(index); }));
  observersDispose_.push_back(preferences.isOpenPlayer.observe([this](bool open) { isOpenPlayerChanged(open); }));
}

void StatusBarManager::removeStatusMenu() {
  statusItem().setMenu(nullptr);
  observersDispose_.clear();
}

// Items and marks

StatusItem& StatusBarManager::statusItem() {
  if (!barItem_) {
    barItem_ = services_.makeStatusItem();
  }
  return *barItem_;
}

StatusBarManager::Item StatusBarManager::makeAction(std::string title, void (StatusBarManager::*action)(),
                                                    const char* key) {
  return std::make_shared<MenuAction>(
      std::move(title), [this, action] { (this->*action)(); }, key);
}

void StatusBarManager::makeItems() {
  const bool isOpen = services_.preferences.isOpenPlayer.get();
  lonelyMenu_ = std::make_shared<Menu>(localized("Single", "Only play on one monitor"));
  lonelyMenu_->setMark(false);
  screenDidChanged();
  const auto arrangement = [this](std::string title, VideoPlayerScreenType type) {
    auto item = std::make_shared<MenuAction>(std::move(title), [this, type] { changeMonitorArray(type); });
    item->setMark(false);
    return item;
  };
  comboItem_ =
      arrangement(localized("Integration", "make up all monitors into one player"), VideoPlayerScreenType::combo);
  dynamicItem_ = arrangement(localized("Mirror", "each monitor has same content"), VideoPlayerScreenType::dynamic);
  toggleVideoDestopItem_ =
      makeAction(isOpen ? closeVideoTitle_ : openVideoTitle_, &StatusBarManager::toggleVideoDesktop);
  playPauseItem_ =
      makeAction(services_.preferences.isPlaying.get() ? pauseTitle_ : playTitle_, &StatusBarManager::playPauseAction);
  playPauseItem_->setEnabled(isOpen);
  hideDesktopIconItem_ =
      makeAction(localized("Hide Desktop Icon", "hide desktop icon"), &StatusBarManager::hideDesktopIconAction);
  hideDesktopIconItem_->setMark(false);
  hideDesktopIconItem_->setEnabled(isOpen);
  muteItem_ = makeAction(localized("Mute", "Mute desktop video"), &StatusBarManager::mutePlayerViewAction);
  // The player's own state, not the setting.
  muteItem_->setMark(services_.videoPlayerManager.isMuted());
}

void StatusBarManager::screenDidChanged() {
  const auto count = static_cast<std::int64_t>(services_.windowServer.screens().size());
  screenItems_.clear();
  for (std::int64_t index = 0; index < count; ++index) {
    const std::string number = std::to_string(index + 1);
    screenItems_.push_back(std::make_shared<MenuAction>(
        number, [this, index] { changeScreenIndex(index); }, number));
    screenItems_.back()->setMark(false);
  }
  markChosenScreen();
  lonelyMenu_->setItems({screenItems_.begin(), screenItems_.end()});
}

void StatusBarManager::markChosenScreen() {
  const std::int64_t index = services_.videoPlayerManager.screenIndex;
  if (!screenItems_.empty()) {
    const bool exists = index >= 0 && index < static_cast<std::int64_t>(screenItems_.size());
    screenItems_[exists ? static_cast<std::size_t>(index) : 0]->setMark(true);
  }
}

// Marks are only turned on here, and "Single" gets its own from the setting's observer alone.
void StatusBarManager::markArrangement() {
  switch (services_.videoPlayerManager.screenType) {
    case VideoPlayerScreenType::dynamic:
      dynamicItem_->setMark(true);
      break;
    case VideoPlayerScreenType::lonely:
      markChosenScreen();
      break;
    case VideoPlayerScreenType::combo:
      comboItem_->setMark(true);
      break;
  }
}

// Changes of the settings

void StatusBarManager::isPlayingChanged(bool playing) {
  playPauseItem_->setTitle(playing ? pauseTitle_ : playTitle_);
}

void StatusBarManager::monitorArrangeChanged(std::int64_t raw) {
  if (raw < 0 || raw > 2) {
    return;
  }
  comboItem_->setMark(raw == 0);
  dynamicItem_->setMark(raw == 1);
  lonelyMenu_->setMark(raw == 2);
}

void StatusBarManager::screenIndexChanged(std::int64_t index) {
  std::int64_t position = 0;
  for (const Item& item : screenItems_) {
    item->setMark(position++ == index);
  }
}

void StatusBarManager::isOpenPlayerChanged(bool open) {
  toggleVideoDestopItem_->setTitle(open ? closeVideoTitle_ : openVideoTitle_);
  hideDesktopIconItem_->setEnabled(open);
  playPauseItem_->setEnabled(open);
  if (open) {
    return;
  }
  desktopIconIsHiden_ = false;
  services_.videoPlayerManager.isHideDesktopIcon = false;
  // An earlier observer of the same change may have opened the player again.
  if (services_.preferences.isOpenPlayer.get()) {
    for (const auto& window : services_.videoPlayerManager.windowList()) {
      window->setLevel(WindowLevel::desktopIcon);
      window->orderBack();
    }
  }
  hideDesktopIconItem_->setMark(false);
}

// What the user chooses

void StatusBarManager::showMainWindowMenuItemAction() {
  services_.workspace.launchApplication(kMainApplication);
}

void StatusBarManager::checkUpdates() {
  services_.checkUpdates();
}

void StatusBarManager::toggleVideoDesktop() {
  auto& isOpenPlayer = services_.preferences.isOpenPlayer;
  if (isOpenPlayer.get()) {
    services_.videoPlayerManager.close();
  } else {
    services_.videoPlayerManager.playCurrent();
  }
  isOpenPlayer.set(!isOpenPlayer.get());
}

void StatusBarManager::playPauseAction() {
  auto& isPlaying = services_.preferences.isPlaying;
  if (isPlaying.get()) {
    playPauseItem_->setTitle(localized("Play", "pause play"));
    services_.videoPlayerManager.player().pause();
  } else {
    playPauseItem_->setTitle(localized("Pause", "play"));
    goOnPlaying();
  }
  isPlaying.set(!isPlaying.get());
}

void StatusBarManager::hideDesktopIconAction() {
  desktopIconIsHiden_ = !desktopIconIsHiden_;
  services_.videoPlayerManager.setHideDesktopIcon(desktopIconIsHiden_);
  hideDesktopIconItem_->setMark(desktopIconIsHiden_);
}

void StatusBarManager::mutePlayerViewAction() {
  const bool mute = !muteItem_->mark().value_or(false);
  services_.videoPlayerManager.setMuted(mute);
  muteItem_->setMark(mute);
  services_.preferences.mute.set(mute);
}

void StatusBarManager::changeMonitorArray(VideoPlayerScreenType type) {
  arrange(type, 0);
  services_.preferences.monitorArrange.set(static_cast<std::int64_t>(type));
}

void StatusBarManager::changeScreenIndex(std::int64_t index) {
  arrange(VideoPlayerScreenType::lonely, index);
  services_.preferences.monitorArrange.set(static_cast<std::int64_t>(VideoPlayerScreenType::lonely));
  services_.preferences.screenIndex.set(index);
}

void StatusBarManager::arrange(VideoPlayerScreenType type, std::int64_t screenIndex) {
  VideoPlayerManager& manager = services_.videoPlayerManager;
  manager.screenType = type;
  manager.screenIndex = screenIndex;
  manager.relayout();
}

void StatusBarManager::quitMenuItemAction() {
  services_.workspace.terminate();
}

void StatusBarManager::showLocalFileWindow() {
  services_.workspace.showOpenPanel({"mp4", "mov"}, [this](bool chosen) {
    if (chosen) {
      goOnPlaying();
    }
  });
}

void StatusBarManager::uploadPlayerView() {
  services_.videoPlayerManager.applyLevelAndOrder();
}

void StatusBarManager::goOnPlaying() {
  uploadPlayerView();
  services_.videoPlayerManager.player().play();
  services_.videoPlayerManager.syncSign();
}

}  // namespace quilex
