#include "ui/StatusBarManager.h"

#include <cstddef>
#include <utility>

namespace quilex {

namespace {

constexpr const char* kMainApplication = "com.dravo.quilex.macOS";

}  // namespace

StatusBarManager::StatusBarManager(Services theServices)
    : services_(std::move(theServices)),
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

  const Item mainWindow =
      makeItem(localized("Main Window", "use to show main window"), &StatusBarManager::showMainWindowMenuItemAction);
  // Kept out of the menu.
  const Item openLocalFile =
      makeItem(localized("Open local file", "open local file"), &StatusBarManager::showLocalFileWindow);
  const Item quit = makeItem(localized("Quit", "quit application"), &StatusBarManager::quitMenuItemAction, "q");
  const auto screen = std::make_shared<MenuItem>(localized("Screen", "title"));

  const auto screenMenu = std::make_shared<Menu>(localized("Screen", "title"));
  screenList();
  lonely().setSubmenu(lonelyMenu_);
  combo();
  dynamic();
  for (const Item& item : {comboItem_, dynamicItem_, lonelyItem_}) {
    screenMenu->addItem(item);
  }
  markArrangement();

  const auto menu = std::make_shared<Menu>();
  menu->addItem(mainWindow);
  const auto version = std::make_shared<MenuItem>(services_.displayVersion);
  version->setEnabled(false);
  menu->addItem(version);
  menu->addItem(makeItem(localized("Check for Updates...", "Check Update"), &StatusBarManager::checkUpdates));
  menu->addItem(MenuItem::separatorItem());
  toggleVideoDestop();
  playPause();
  hideDesktopIcon();
  muting();
  for (const Item& item : {toggleVideoDestopItem_, playPauseItem_, hideDesktopIconItem_, muteItem_}) {
    menu->addItem(item);
  }
  menu->addItem(MenuItem::separatorItem());
  if (services_.windowServer.screens().size() > 1) {
    screen->setSubmenu(screenMenu);
    menu->addItem(screen);
  }
  menu->addItem(MenuItem::separatorItem());
  menu->addItem(quit);
  statusItem().setMenu(menu);
  observeSettings();
}

void StatusBarManager::observeSettings() {
  Preferences& preferences = services_.preferences;
  observersDispose_.push_back(preferences.mute.observe([this](bool mute) { muting().setState(mute); }));
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

StatusBarManager::Item StatusBarManager::makeItem(std::string title, void (StatusBarManager::*action)(),
                                                  const char* key) {
  return std::make_shared<MenuItem>(
      std::move(title), [this, action](MenuItem&) { (this->*action)(); }, key);
}

StatusBarManager::Item StatusBarManager::makeItem(std::string title, void (StatusBarManager::*action)(MenuItem&)) {
  return std::make_shared<MenuItem>(std::move(title), [this, action](MenuItem& sender) { (this->*action)(sender); });
}

StatusItem& StatusBarManager::statusItem() {
  if (!barItem_) {
    barItem_ = services_.makeStatusItem();
  }
  return *barItem_;
}

MenuItem& StatusBarManager::toggleVideoDestop() {
  if (!toggleVideoDestopItem_) {
    toggleVideoDestopItem_ =
        std::make_shared<MenuItem>(services_.preferences.isOpenPlayer.get() ? closeVideoTitle_ : openVideoTitle_,
                                   [this](MenuItem&) { toggleVideoDesktop(); });
  }
  return *toggleVideoDestopItem_;
}

MenuItem& StatusBarManager::playPause() {
  if (!playPauseItem_) {
    playPauseItem_ = std::make_shared<MenuItem>(services_.preferences.isPlaying.get() ? pauseTitle_ : playTitle_,
                                                [this](MenuItem& sender) { playPauseAction(sender); });
    playPauseItem_->setEnabled(services_.preferences.isOpenPlayer.get());
  }
  return *playPauseItem_;
}

MenuItem& StatusBarManager::hideDesktopIcon() {
  if (!hideDesktopIconItem_) {
    hideDesktopIconItem_ =
        makeItem(localized("Hide Desktop Icon", "hide desktop icon"), &StatusBarManager::hideDesktopIconAction);
    hideDesktopIconItem_->setCheckable(true);
    hideDesktopIconItem_->setEnabled(services_.preferences.isOpenPlayer.get());
  }
  return *hideDesktopIconItem_;
}

MenuItem& StatusBarManager::muting() {
  if (!muteItem_) {
    muteItem_ = makeItem(localized("Mute", "Mute desktop video"), &StatusBarManager::mutePlayerViewAction);
    muteItem_->setCheckable(true);
    // The player's own state, not the setting.
    muteItem_->setState(services_.videoPlayerManager.isMuted());
  }
  return *muteItem_;
}

MenuItem& StatusBarManager::combo() {
  if (!comboItem_) {
    comboItem_ = makeItem(localized("Integration", "make up all monitors into one player"),
                          &StatusBarManager::changeMonitorArray);
    comboItem_->setCheckable(true);
  }
  return *comboItem_;
}

MenuItem& StatusBarManager::dynamic() {
  if (!dynamicItem_) {
    dynamicItem_ =
        makeItem(localized("Mirror", "each monitor has same content"), &StatusBarManager::changeMonitorArray);
    dynamicItem_->setCheckable(true);
  }
  return *dynamicItem_;
}

MenuItem& StatusBarManager::lonely() {
  if (!lonelyItem_) {
    lonelyItem_ = std::make_shared<MenuItem>(localized("Single", "Only play on one monitor"));
    lonelyItem_->setCheckable(true);
  }
  return *lonelyItem_;
}

Menu& StatusBarManager::screenList() {
  if (!lonelyMenu_) {
    lonelyMenu_ = std::make_shared<Menu>(localized("Single", "Only play on one monitor"));
    screenDidChanged();
  }
  return *lonelyMenu_;
}

void StatusBarManager::screenDidChanged() {
  Menu& menu = screenList();
  menu.removeAllItems();
  const int count = static_cast<int>(services_.windowServer.screens().size());
  for (int index = 0; index < count; ++index) {
    const std::string number = std::to_string(index + 1);
    auto item = std::make_shared<MenuItem>(
        number, [this](MenuItem& sender) { changeScreenIndex(sender); }, number);
    item->setCheckable(true);
    item->setTag(index);
    menu.addItem(std::move(item));
  }
  markChosenScreen();
}

void StatusBarManager::markChosenScreen() {
  const auto& items = screenList().itemArray();
  const std::int64_t index = services_.videoPlayerManager.screenIndex;
  if (!items.empty()) {
    const bool exists = index >= 0 && index < static_cast<std::int64_t>(items.size());
    items[exists ? static_cast<std::size_t>(index) : 0]->setState(true);
  }
}

// Marks are only turned on here, and "Single" gets its own from the setting's observer alone.
void StatusBarManager::markArrangement() {
  switch (services_.videoPlayerManager.screenType) {
    case VideoPlayerScreenType::dynamic:
      dynamic().setState(true);
      break;
    case VideoPlayerScreenType::lonely:
      markChosenScreen();
      break;
    case VideoPlayerScreenType::combo:
      combo().setState(true);
      break;
  }
}

// What the settings tell

void StatusBarManager::isPlayingChanged(bool playing) {
  playPause().setTitle(playing ? pauseTitle_ : playTitle_);
}

void StatusBarManager::monitorArrangeChanged(std::int64_t raw) {
  if (raw < 0 || raw > 2) {
    return;
  }
  combo().setState(raw == 0);
  dynamic().setState(raw == 1);
  lonely().setState(raw == 2);
}

void StatusBarManager::screenIndexChanged(std::int64_t index) {
  std::int64_t position = 0;
  for (const Item& item : screenList().itemArray()) {
    item->setState(position++ == index);
  }
}

void StatusBarManager::isOpenPlayerChanged(bool open) {
  toggleVideoDestop().setTitle(open ? closeVideoTitle_ : openVideoTitle_);
  hideDesktopIcon().setEnabled(open);
  playPause().setEnabled(open);
  if (open) {
    return;
  }
  desktopIconIsHiden_ = false;
  services_.videoPlayerManager.isHideDesktopIcon = false;
  // An observer that was told earlier may have opened the player again.
  if (services_.preferences.isOpenPlayer.get()) {
    for (const auto& window : services_.videoPlayerManager.windowList()) {
      window->setLevel(WindowLevel::desktopIcon);
      window->orderBack();
    }
  }
  hideDesktopIcon().setState(false);
}

// What the user chooses

void StatusBarManager::showMainWindowMenuItemAction() {
  services_.workspace.launchApplication(kMainApplication);
}

void StatusBarManager::checkUpdates() {
  if (services_.checkUpdates) {
    services_.checkUpdates();
  }
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

void StatusBarManager::playPauseAction(MenuItem& sender) {
  auto& isPlaying = services_.preferences.isPlaying;
  if (isPlaying.get()) {
    sender.setTitle(localized("Play", "pause play"));
    services_.videoPlayerManager.player().pause();
  } else {
    sender.setTitle(localized("Pause", "play"));
    goOnPlaying();
  }
  isPlaying.set(!isPlaying.get());
}

void StatusBarManager::hideDesktopIconAction() {
  desktopIconIsHiden_ = !desktopIconIsHiden_;
  services_.videoPlayerManager.setHideDesktopIcon(desktopIconIsHiden_);
  hideDesktopIcon().setState(desktopIconIsHiden_);
}

void StatusBarManager::mutePlayerViewAction(MenuItem& sender) {
  const bool mute = !sender.state();
  services_.videoPlayerManager.setMuted(mute);
  sender.setState(mute);
  services_.preferences.mute.set(mute);
}

void StatusBarManager::changeMonitorArray(MenuItem& sender) {
  const bool isCombo = &sender == comboItem_.get();
  VideoPlayerManager& manager = services_.videoPlayerManager;
  manager.screenType = isCombo ? VideoPlayerScreenType::combo : VideoPlayerScreenType::dynamic;
  manager.screenIndex = 0;
  manager.relayout();
  services_.preferences.monitorArrange.set(isCombo ? 0 : 1);
}

void StatusBarManager::changeScreenIndex(MenuItem& sender) {
  VideoPlayerManager& manager = services_.videoPlayerManager;
  const int index = sender.tag();
  manager.screenType = VideoPlayerScreenType::lonely;
  manager.screenIndex = index;
  manager.relayout();
  services_.preferences.monitorArrange.set(2);
  services_.preferences.screenIndex.set(index);
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
