#pragma once

#include <functional>

#include "platform/DistributedNotificationCenter.h"
#include "playback/VideoPlayerManager.h"

namespace quilex {

/// Starts the agent's services at launch and answers the system's events. Main thread.
class AppDelegate {
 public:
  /// How the delegate reaches what it starts; the services are made when they are first asked for, so that they come
  /// up in the order of the launch. All must outlive the delegate.
  struct Services {
    std::function<VideoPlayerManager&()> videoPlayerManager;
    DistributedNotificationCenter& notificationCenter;
  };

  explicit AppDelegate(Services services);

  /// Builds the wallpaper windows and starts playback.
  void applicationDidFinishLaunching();
  /// Tells the main application that the agent is gone.
  void applicationWillTerminate();
  /// Monitors came, went or changed.
  void applicationDidChangeScreenParameters();

 private:
  Services services;
};

}  // namespace quilex
