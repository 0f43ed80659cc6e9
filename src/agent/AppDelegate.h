#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "platform/AppInfo.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/InterfaceWindow.h"
#include "platform/Localization.h"
#include "platform/RunLoop.h"
#include "platform/Workspace.h"
#include "playback/VideoPlayerManager.h"
#include "service/UpgradeInfo.h"
#include "settings/Preferences.h"
#include "ui/CustomAlertWindowController.h"
#include "ui/StatusBarManager.h"
#include "ui/UpgradeWindowController.h"

namespace quilex {

/// Starts the agent's services at launch, answers the system's events, and tells the user of newer versions. Main
/// thread.
class AppDelegate {
 public:
  QUILEX_TEXTS_FILED_UNDER(QuilexHelper);

  /// The notification that the agent is gone.
  static constexpr const char* kTermination = "com.dravo.quilex.mac.ter";

  /// Told once whether there is a version on offer, and which; nothing also stands for a failure.
  using UpgradeCompletion = std::function<void(const std::optional<UpgradeInfo>&)>;
  /// Asks the web service for the version on offer.
  using RequestUpgradeInfo = std::function<void(const UpgradeCompletion&)>;
  /// Who asked for an update check.
  enum class Check { automatic, manual };

  /// How the delegate reaches what it starts; the services are made when they are first asked for, so that they come
  /// up in the order of the launch. All must outlive the delegate.
  struct Services {
    std::function<Preferences&()> preferences;
    std::function<VideoPlayerManager&()> videoPlayerManager;
    std::function<StatusBarManager&()> statusBarManager;
    Workspace& workspace;
    DistributedNotificationCenter& notificationCenter;
    RunLoop& runLoop;
    std::function<const AppInfo&()> appInfo;
    RequestUpgradeInfo requestUpgradeInfo;
    LoadInterfaceFile loadInterfaceFile;
    Localize localize;
  };

  explicit AppDelegate(Services services);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  /// Builds the wallpaper windows and starts playback, then builds the status menu, then listens for the machine's
  /// wake, has the start at login follow its setting, and at last checks for updates.
  void applicationDidFinishLaunching();
  /// Tells the main application that the agent is gone; once, however often it is called.
  void applicationWillTerminate();
  /// The agent as a whole became fully covered, or visible again.
  void applicationDidChangeOcclusionState();
  /// Monitors came, went or changed.
  void applicationDidChangeScreenParameters();
  /// The agent lost the keyboard to another program.
  void applicationDidResignActive();
  void didWakeNotification();

  /// Asks for the version on offer, and shows what comes of it.
  void checkUpdates(Check check);
  /// Offers that version, in the next turn of the run loop, if the application's own orders before it as plain text;
  /// else tells the user who asked that the application is up to date.
  void updateCheckCompletion(const std::optional<UpgradeInfo>& info, Check check);

 private:
  struct Outcome {
    std::optional<UpgradeInfo> info;
    Check check;
  };

  bool isPlayingInTheOpen() const;
  void show(const Outcome& outcome);
  void offer(const UpgradeInfo& info);
  void showUpToDate();
  std::string localized(const char* english, const char* comment) const { return services_.localize(english, comment); }

  Services services_;
  /// Made on first use, and kept.
  std::optional<CustomAlertWindowController> upToDateWindowController_;
  /// The last offer, whether or not it is still shown.
  std::unique_ptr<UpgradeWindowController> upgradeWC_;
  std::optional<Disposable> wake_;
  std::optional<Disposable> login_;
  std::deque<Outcome> outcomes_;
  std::optional<Disposable> mainQueue_;
  bool plays_ = false;
  bool terminated_ = false;
};

}  // namespace quilex
