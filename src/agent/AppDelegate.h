#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "base/MainThread.h"
#include "platform/AppInfo.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/InterfaceWindow.h"
#include "platform/Localization.h"
#include "platform/RunLoop.h"
#include "platform/Workspace.h"
#include "playback/VideoPlayerManager.h"
#include "service/UpgradeInfoSource.h"
#include "settings/Preferences.h"
#include "ui/CustomAlertWindowController.h"
#include "ui/StatusBarManager.h"
#include "ui/UpgradeWindowController.h"

namespace quilex {

/// Launches the agent, reacts to the system's events, and checks for newer versions. Main thread.
class AppDelegate {
 public:
  QUILEX_TEXTS_FILED_UNDER(QuilexHelper);

  /// The notification that the agent is gone.
  static constexpr const char* kTermination = "com.dravo.quilex.mac.ter";

  /// Who asked for an update check: the launch, or the user.
  enum class Check { automatic, manual };

  /// What the delegate works with; all of it must outlive the delegate.
  struct Services {
    Preferences& preferences;
    VideoPlayerManager& videoPlayerManager;
    StatusBarManager& statusBarManager;
    UpgradeInfoSource& upgradeInfoSource;
    Workspace& workspace;
    DistributedNotificationCenter& notificationCenter;
    RunLoop& runLoop;
    const AppInfo& appInfo;
    LoadInterfaceFile loadInterfaceFile;
    Localize localize;
  };

  explicit AppDelegate(Services services);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  /// In this order: builds the wallpaper windows and starts playback, builds the status menu, observes the machine's
  /// wake, makes the start at login follow its setting, and checks for updates.
  void applicationDidFinishLaunching();
  /// Notifies the main application that the agent is gone; once, however often it is called.
  void applicationWillTerminate();
  /// The agent's windows as a whole were fully covered, or became visible again.
  void applicationDidChangeOcclusionState();
  /// Monitors came, went or changed.
  void applicationDidChangeScreenParameters();
  /// The agent lost the keyboard to another program.
  void applicationDidResignActive();
  /// The machine woke from sleep.
  void didWakeNotification();

  /// Requests the version on offer, and calls `updateCheckCompletion` with the answer.
  void checkUpdates(Check check);
  /// In the next turn of the run loop, offers that version if the application's own is less, compared as plain text.
  /// Otherwise, if the user asked, shows that the application is up to date, also when no answer came.
  void updateCheckCompletion(const std::optional<UpgradeInfo>& info, Check check);

 private:
  struct Answer {
    std::optional<UpgradeInfo> info;
    Check check;
  };

  bool isPlayingInTheOpen() const;
  void show(const Answer& answer);
  void offer(const UpgradeInfo& info);
  void showUpToDate();
  std::string localized(const char* english, const char* comment) const { return services_.localize(english, comment); }

  [[no_unique_address]] MainThread mainThread_;
  Services services_;
  /// Made on first use and kept.
  std::optional<CustomAlertWindowController> upToDateWindowController_;
  /// The last offer, shown or closed.
  std::unique_ptr<UpgradeWindowController> upgradeWC_;
  std::optional<Disposable> wake_;
  std::optional<Disposable> login_;
  std::deque<Answer> answers_;
  std::optional<Disposable> mainQueue_;
  bool launched_ = false;
  bool terminated_ = false;
};

}  // namespace quilex
