#pragma once

#include "library/LocalVideoDBManager.h"
#include "platform/Console.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/FileFinder.h"
#include "platform/RandomSource.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"
#include "platform/StatusReport.h"
#include "platform/VideoPlayer.h"
#include "platform/WindowServer.h"
#include "settings/Preferences.h"

namespace quilex {

/// What this room works with; all of it must outlive the room's objects.
struct PlaybackServices {
  Preferences& preferences;
  SettingsSuite& standardDefaults;
  LocalVideoDBManager& library;
  FileFinder& fileFinder;
  WindowServer& windowServer;
  DistributedNotificationCenter& notificationCenter;
  RunLoop& runLoop;
  Console& console;
  VideoPlayerFactory makePlayer;
  UniformRandom random;
  StatusReport& report;
};

}  // namespace quilex
