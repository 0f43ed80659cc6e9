#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "platform/Localization.h"
#include "platform/Menu.h"
#include "platform/StatusItem.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"
#include "playback/VideoPlayerManager.h"
#include "settings/Preferences.h"

namespace quilex {

/// The status item and its menu: builds the menu, keeps it in step with the settings, and turns what the user chooses
/// into calls on playback and settings. Main thread.
class StatusBarManager {
 public:
  QUILEX_TEXTS_FILED_UNDER(QuilexHelper);

  /// What the menu works with; all of it must outlive the manager.
  struct Services {
    Preferences& preferences;
    VideoPlayerManager& videoPlayerManager;
    WindowServer& windowServer;
    Workspace& workspace;
    StatusItemFactory makeStatusItem;
    Localize localize;
    /// The application's version as the menu shows it.
    std::string displayVersion;
    /// Asks whether there is a newer version and shows the answer.
    std::function<void()> checkUpdates;
  };

  explicit StatusBarManager(Services services);
  ~StatusBarManager();
  StatusBarManager(const StatusBarManager&) = delete;
  StatusBarManager& operator=(const StatusBarManager&) = delete;

  /// The instance of this process.
  static StatusBarManager& shared();

  /// Builds the menu out of the items, which are made once and kept, and follows the settings from then on. Each call
  /// registers for changes of the screens once more, and none of these registrations is ever removed.
  void buildStatusMenu();
  /// Takes the menu off the status item and stops following the settings.
  void removeStatusMenu();
  /// Lists the screens anew in the submenu of the single-screen arrangement.
  void screenDidChanged();
  /// Puts the wallpaper windows back at their level and order.
  void uploadPlayerView();
  /// Lets the user choose a video file, and goes on playing when one was chosen. No menu shows this.
  void showLocalFileWindow();

 private:
  using Item = std::shared_ptr<MenuItem>;

  std::string localized(const char* english, const char* comment) const { return services_.localize(english, comment); }
  Item makeItem(std::string title, void (StatusBarManager::*action)(), const char* key = "");
  Item makeItem(std::string title, void (StatusBarManager::*action)(MenuItem&));
  void observeSettings();

  StatusItem& statusItem();
  MenuItem& toggleVideoDestop();
  MenuItem& playPause();
  MenuItem& hideDesktopIcon();
  MenuItem& muting();
  MenuItem& combo();
  MenuItem& dynamic();
  MenuItem& lonely();
  Menu& screenList();
  void markArrangement();
  void markChosenScreen();

  void isPlayingChanged(bool playing);
  void monitorArrangeChanged(std::int64_t raw);
  void screenIndexChanged(std::int64_t index);
  void isOpenPlayerChanged(bool open);

  void showMainWindowMenuItemAction();
  void checkUpdates();
  void toggleVideoDesktop();
  void playPauseAction(MenuItem& sender);
  void hideDesktopIconAction();
  void mutePlayerViewAction(MenuItem& sender);
  void changeMonitorArray(MenuItem& sender);
  void changeScreenIndex(MenuItem& sender);
  void quitMenuItemAction();
  void goOnPlaying();

  Services services_;
  bool desktopIconIsHiden_ = false;
  std::unique_ptr<StatusItem> barItem_;
  const std::string openVideoTitle_;
  const std::string closeVideoTitle_;
  const std::string playTitle_;
  const std::string pauseTitle_;
  // Made on first use.
  Item toggleVideoDestopItem_;
  Item playPauseItem_;
  Item hideDesktopIconItem_;
  Item muteItem_;
  Item comboItem_;
  Item dynamicItem_;
  Item lonelyItem_;
  std::shared_ptr<Menu> lonelyMenu_;
  std::vector<Disposable> screenObservations_;
  /// Of the five settings that the menu shows.
  std::vector<Disposable> observersDispose_;
};

}  // namespace quilex
