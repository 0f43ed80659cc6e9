#pragma once

#include <functional>
#include <optional>

#include "app/Disposable.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/Workspace.h"
#include "playback/VideoPlayerManager.h"
#include "settings/Preferences.h"
#include "ui/StatusBarManager.h"

namespace quilex {

/// Starts the agent's services at launch and answers the system's events. Main thread.
class AppDelegate {
 public:
  /// How the delegate reaches what it starts; the services are made when they are first asked for, so that they come
  /// up in the order of the launch. All must outlive the delegate.
  struct Services {
    std::function<Preferences&()> preferences;
    std::function<VideoPlayerManager&()> videoPlayerManager;
    std::function<StatusBarManager&()> statusBarManager;
    Workspace& workspace;
    DistributedNotificationCenter& notificationCenter;
  };

  explicit AppDelegate(Services services);

  /// Builds the wallpaper windows and starts playback, then builds the status menu, then listens for the machine's
  /// wake.
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

 private:
  bool isPlayingInTheOpen() const;

  Services services;
  std::optional<Disposable> wake;
  bool terminated = false;
};

}  // namespace quilex
