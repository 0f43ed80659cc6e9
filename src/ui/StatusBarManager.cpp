#include "ui/StatusBarManager.h"

#include <cstddef>
#include <utility>

namespace quilex {

namespace {

constexpr const char* kMainApplication = "com.dravo.quilex.macOS";

}  // namespace

StatusBarManager::StatusBarManager(Services theServices)
    : services(std::move(theServices)),
      openVideoTitle(localized("Open Video Wallpaper", "start/stop Video Desktop")),
      closeVideoTitle(localized("Close Video Wallpaper", "start/stop Video Desktop")),
      playTitle(localized("Play", "play/pause")),
      pauseTitle(localized("Pause", "pause play")) {}

StatusBarManager::~StatusBarManager() {
  observersDispose.clear();
}

void StatusBarManager::buildStatusMenu() {
  screenObservations.push_back(services.windowServer.observeScreens([this] { screenDidChanged(); }));
  observersDispose.push_back(
      services.preferences.isPlaying.observe([this](bool playing) { isPlayingChanged(playing); }));
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
  lonely().setSubmenu(lonelyMenu);
  combo();
  dynamic();
  for (const Item& item : {comboItem, dynamicItem, lonelyItem}) {
    screenMenu->addItem(item);
  }
  markArrangement();

  const auto menu = std::make_shared<Menu>();
  menu->addItem(mainWindow);
  const auto version = std::make_shared<MenuItem>(services.displayVersion);
  version->setEnabled(false);
  menu->addItem(version);
  menu->addItem(makeItem(localized("Check for Updates...", "Check Update"), &StatusBarManager::checkUpdates));
  menu->addItem(MenuItem::separatorItem());
  toggleVideoDestop();
  playPause();
  hideDesktopIcon();
  muting();
  for (const Item& item : {toggleVideoDestopItem, playPauseItem, hideDesktopIconItem, muteItem}) {
    menu->addItem(item);
  }
  menu->addItem(MenuItem::separatorItem());
  if (services.windowServer.screens().size() > 1) {
    screen->setSubmenu(screenMenu);
    menu->addItem(screen);
  }
  menu->addItem(MenuItem::separatorItem());
  menu->addItem(quit);
  statusItem().setMenu(menu);
  observeSettings();
}

void StatusBarManager::observeSettings() {
  Preferences& preferences = services.preferences;
  observersDispose.push_back(preferences.mute.observe([this](bool mute) { muting().setState(mute); }));
  observersDispose.push_back(
      preferences.monitorArrange.observe([this](std::int64_t raw) { monitorArrangeChanged(raw); }));
  observersDispose.push_back(
      preferences.screenIndex.observe([this](std::int64_t index) { screenIndexChanged(index); }));
  observersDispose.push_back(preferences.isOpenPlayer.observe([this](bool open) { isOpenPlayerChanged(open); }));
}

void StatusBarManager::removeStatusMenu() {
  statusItem().setMenu(nullptr);
  observersDispose.clear();
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
  if (!barItem) {
    barItem = services.makeStatusItem();
  }
  return *barItem;
}

MenuItem& StatusBarManager::toggleVideoDestop() {
  if (!toggleVideoDestopItem) {
    toggleVideoDestopItem =
        std::make_shared<MenuItem>(services.preferences.isOpenPlayer.get() ? closeVideoTitle : openVideoTitle,
                                   [this](MenuItem&) { toggleVideoDesktop(); });
  }
  return *toggleVideoDestopItem;
}

MenuItem& StatusBarManager::playPause() {
  if (!playPauseItem) {
    playPauseItem = std::make_shared<MenuItem>(services.preferences.isPlaying.get() ? pauseTitle : playTitle,
                                               [this](MenuItem& sender) { playPauseAction(sender); });
    playPauseItem->setEnabled(services.preferences.isOpenPlayer.get());
  }
  return *playPauseItem;
}

MenuItem& StatusBarManager::hideDesktopIcon() {
  if (!hideDesktopIconItem) {
    hideDesktopIconItem =
        makeItem(localized("Hide Desktop Icon", "hide desktop icon"), &StatusBarManager::hideDesktopIconAction);
    hideDesktopIconItem->setCheckable(true);
    hideDesktopIconItem->setEnabled(services.preferences.isOpenPlayer.get());
  }
  return *hideDesktopIconItem;
}

MenuItem& StatusBarManager::muting() {
  if (!muteItem) {
    muteItem = makeItem(localized("Mute", "Mute desktop video"), &StatusBarManager::mutePlayerViewAction);
    muteItem->setCheckable(true);
    // The player's own state, not the setting.
    muteItem->setState(services.videoPlayerManager.isMuted());
  }
  return *muteItem;
}

MenuItem& StatusBarManager::combo() {
  if (!comboItem) {
    comboItem = makeItem(localized("Integration", "make up all monitors into one player"),
                         &StatusBarManager::changeMonitorArray);
    comboItem->setCheckable(true);
  }
  return *comboItem;
}

MenuItem& StatusBarManager::dynamic() {
  if (!dynamicItem) {
    dynamicItem = makeItem(localized("Mirror", "each monitor has same content"), &StatusBarManager::changeMonitorArray);
    dynamicItem->setCheckable(true);
  }
  return *dynamicItem;
}

MenuItem& StatusBarManager::lonely() {
  if (!lonelyItem) {
    lonelyItem = std::make_shared<MenuItem>(localized("Single", "Only play on one monitor"));
    lonelyItem->setCheckable(true);
  }
  return *lonelyItem;
}

Menu& StatusBarManager::screenList() {
  if (!lonelyMenu) {
    lonelyMenu = std::make_shared<Menu>(localized("Single", "Only play on one monitor"));
    screenDidChanged();
  }
  return *lonelyMenu;
}

void StatusBarManager::screenDidChanged() {
  Menu& menu = screenList();
  menu.removeAllItems();
  const int count = static_cast<int>(services.windowServer.screens().size());
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
  const std::int64_t index = services.videoPlayerManager.screenIndex;
  if (!items.empty()) {
    const bool exists = index >= 0 && index < static_cast<std::int64_t>(items.size());
    items[exists ? static_cast<std::size_t>(index) : 0]->setState(true);
  }
}

// Marks are only turned on here, and "Single" gets its own from the setting's observer alone.
void StatusBarManager::markArrangement() {
  switch (services.videoPlayerManager.screenType) {
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
  playPause().setTitle(playing ? pauseTitle : playTitle);
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
  toggleVideoDestop().setTitle(open ? closeVideoTitle : openVideoTitle);
  hideDesktopIcon().setEnabled(open);
  playPause().setEnabled(open);
  if (open) {
    return;
  }
  desktopIconIsHiden = false;
  services.videoPlayerManager.isHideDesktopIcon = false;
  // An observer that was told earlier may have opened the player again.
  if (services.preferences.isOpenPlayer.get()) {
    for (const auto& window : services.videoPlayerManager.windowList()) {
      window->setLevel(WindowLevel::desktopIcon);
      window->orderBack();
    }
  }
  hideDesktopIcon().setState(false);
}

// What the user chooses

void StatusBarManager::showMainWindowMenuItemAction() {
  services.workspace.launchApplication(kMainApplication);
}

void StatusBarManager::checkUpdates() {
  if (services.checkUpdates) {
    services.checkUpdates();
  }
}

void StatusBarManager::toggleVideoDesktop() {
  auto& isOpenPlayer = services.preferences.isOpenPlayer;
  if (isOpenPlayer.get()) {
    services.videoPlayerManager.close();
  } else {
    services.videoPlayerManager.playCurrent();
  }
  isOpenPlayer.set(!isOpenPlayer.get());
}

void StatusBarManager::playPauseAction(MenuItem& sender) {
  auto& isPlaying = services.preferences.isPlaying;
  if (isPlaying.get()) {
    sender.setTitle(localized("Play", "pause play"));
    services.videoPlayerManager.player().pause();
  } else {
    sender.setTitle(localized("Pause", "play"));
    goOnPlaying();
  }
  isPlaying.set(!isPlaying.get());
}

void StatusBarManager::hideDesktopIconAction() {
  desktopIconIsHiden = !desktopIconIsHiden;
  services.videoPlayerManager.setHideDesktopIcon(desktopIconIsHiden);
  hideDesktopIcon().setState(desktopIconIsHiden);
}

void StatusBarManager::mutePlayerViewAction(MenuItem& sender) {
  const bool mute = !sender.state();
  services.videoPlayerManager.setMuted(mute);
  sender.setState(mute);
  services.preferences.mute.set(mute);
}

void StatusBarManager::changeMonitorArray(MenuItem& sender) {
  const bool isCombo = &sender == comboItem.get();
  VideoPlayerManager& manager = services.videoPlayerManager;
  manager.screenType = isCombo ? VideoPlayerScreenType::combo : VideoPlayerScreenType::dynamic;
  manager.screenIndex = 0;
  manager.relayout();
  services.preferences.monitorArrange.set(isCombo ? 0 : 1);
}

void StatusBarManager::changeScreenIndex(MenuItem& sender) {
  VideoPlayerManager& manager = services.videoPlayerManager;
  const int index = sender.tag();
  manager.screenType = VideoPlayerScreenType::lonely;
  manager.screenIndex = index;
  manager.relayout();
  services.preferences.monitorArrange.set(2);
  services.preferences.screenIndex.set(index);
}

void StatusBarManager::quitMenuItemAction() {
  services.workspace.terminate();
}

void StatusBarManager::showLocalFileWindow() {
  services.workspace.showOpenPanel({"mp4", "mov"}, [this](bool chosen) {
    if (chosen) {
      goOnPlaying();
    }
  });
}

void StatusBarManager::uploadPlayerView() {
  services.videoPlayerManager.applyLevelAndOrder();
}

void StatusBarManager::goOnPlaying() {
  uploadPlayerView();
  services.videoPlayerManager.player().play();
  services.videoPlayerManager.syncSign();
}

}  // namespace quilex
