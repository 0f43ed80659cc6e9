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

/// Builds the status item's menu, keeps it in step with the settings, and turns what the user chooses into calls on
/// playback and settings. Main thread.
class StatusBarManager {
 public:
  QUILEX_TEXTS_FILED_UNDER(QuilexHelper);

  /// What the manager works with; all of it must outlive the manager.
  struct Services {
    Preferences& preferences;
    VideoPlayerManager& videoPlayerManager;
    WindowServer& windowServer;
    Workspace& workspace;
    StatusItemFactory makeStatusItem;
    Localize localize;
    /// The application's version as the menu shows it.
    std::string displayVersion;
    /// Starts an update check that the user has asked for.
    std::function<void()> checkUpdates;
  };

  explicit StatusBarManager(Services services);
  ~StatusBarManager();
  StatusBarManager(const StatusBarManager&) = delete;
  StatusBarManager& operator=(const StatusBarManager&) = delete;

  /// The instance of this process.
  static StatusBarManager& shared();

  /// Builds the menu and follows the settings from then on. Items whose look changes are made by the first call and
  /// kept. Each call registers for changes of the screens once more, and none of these registrations is ever removed.
  void buildStatusMenu();
  /// Takes the menu off the status item and stops following the settings.
  void removeStatusMenu();
  /// Lists the screens again in the submenu of the single-screen arrangement. Needs a menu that was built.
  void screenDidChanged();
  /// Puts the wallpaper windows back at their level and order. For callers other than the menu, which has no item for
  /// it.
  void uploadPlayerView();
  /// Lets the user choose a video file, and goes on playing if one was chosen. For callers other than the menu, too.
  void showLocalFileWindow();

 private:
  using Item = std::shared_ptr<MenuAction>;

  std::string localized(const char* english, const char* comment) const { return services_.localize(english, comment); }
  Item makeAction(std::string title, void (StatusBarManager::*action)(), const char* key = "");
  void makeItems();
  void observeSettings();

  StatusItem& statusItem();
  void markArrangement();
  void markChosenScreen();

  void isPlayingChanged(bool playing);
  void monitorArrangeChanged(std::int64_t raw);
  void screenIndexChanged(std::int64_t index);
  void isOpenPlayerChanged(bool open);

  void showMainWindowMenuItemAction();
  void checkUpdates();
  void toggleVideoDesktop();
  void playPauseAction();
  void hideDesktopIconAction();
  void mutePlayerViewAction();
  void changeMonitorArray(VideoPlayerScreenType type);
  void changeScreenIndex(std::int64_t index);
  void arrange(VideoPlayerScreenType type, std::int64_t screenIndex);
  void quitMenuItemAction();
  void goOnPlaying();

  Services services_;
  bool desktopIconIsHiden_ = false;
  std::unique_ptr<StatusItem> barItem_;
  const std::string openVideoTitle_;
  const std::string closeVideoTitle_;
  const std::string playTitle_;
  const std::string pauseTitle_;
  // Made when the menu is first built, and kept.
  Item toggleVideoDestopItem_;
  Item playPauseItem_;
  Item hideDesktopIconItem_;
  Item muteItem_;
  Item comboItem_;
  Item dynamicItem_;
  /// "Single", which opens the list of screens.
  std::shared_ptr<Menu> lonelyMenu_;
  /// The entries of `lonelyMenu_`, by the index of their screen.
  std::vector<Item> screenItems_;
  std::vector<Disposable> screenObservations_;
  /// Of the five settings that the menu shows.
  std::vector<Disposable> observersDispose_;
};

}  // namespace quilex
