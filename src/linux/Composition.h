#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/AppDelegate.h"
#include "base/Result.h"
#include "library/LocalVideoDBManager.h"
#include "linux/StandardConsole.h"
#include "linux/desktop/Desktop.h"
#include "linux/render/VideoOutput.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/AgentObject.h"
#include "linux/session/dbus/DBusNotificationCenter.h"
#include "linux/session/files/ThreadedFileFinder.h"
#include "linux/session/settings/JsonSettingsSuite.h"
#include "linux/session/workspace/LinuxWorkspace.h"
#include "linux/toolkit/loop/LocalWallClock.h"
#include "linux/toolkit/loop/QtBackgroundWork.h"
#include "linux/toolkit/loop/QtRunLoop.h"
#include "platform/AppInfo.h"
#include "platform/NotificationCenter.h"
#include "platform/StatusReport.h"
#include "playback/PauseRules.h"
#include "playback/Standstill.h"
#include "playback/VideoPlayerManager.h"
#include "service/WebModel.h"
#include "settings/Preferences.h"
#include "ui/StatusBarManager.h"

namespace quilex {

/// The agent, put together: the core over the Linux adapters. Each part gets what it needs from the parts before it.
/// The core's `shared()` functions answer from the one composition of the process. Main thread.
class Composition {
 public:
  /// Opens the settings, chooses the renderer and builds everything; shows and plays nothing yet. `backendReason` says
  /// why the desktop that is tried first was not taken, if so. `desktopLost` is called once when the desktop goes away.
  /// The desktop must outlive the composition.
  static Result<std::unique_ptr<Composition>> make(Desktop& desktop, std::string backendReason,
                                                   std::function<void()> desktopLost);
  ~Composition();
  Composition(const Composition&) = delete;
  Composition& operator=(const Composition&) = delete;

  /// The composition of the process; asking before it is made stops the process.
  static Composition& instance();

  /// Writes the settings that are still to be written, waiting a moment for other programs if need be. Any thread.
  void writeSettings();

 private:
  struct Foundation;

  explicit Composition(Foundation&& foundation);
  void reportStart(const Foundation& foundation);
  void reportDisplays();
  void reportPlacement();
  void respectReasons();
  PauseWatches pauseWatches();
  std::unique_ptr<StatusItem> makeStatusItem();

  // The adapters
  std::unique_ptr<QtRunLoop> runLoop_;
  StandardConsole console_;
  StatusReport report_;
  AgentObject object_{report_};
  ThreadedFileFinder fileFinder_{*runLoop_};
  LinuxBundle bundle_ = LinuxBundle::main();
  DBusNotificationCenter notifications_;
  QtBackgroundWork backgroundWork_;
  LinuxWorkspace workspace_{backgroundWork_};
  LocalWallClock wallClock_;
  NotificationCenter processNotifications_;
  std::unique_ptr<JsonSettingsSuite> suite_;
  std::unique_ptr<JsonSettingsSuite> standardDefaults_;
  Desktop& desktop_;
  Renderer& renderer_;
  VideoOutput output_;
  std::unique_ptr<WindowServer> windowServer_;

 public:
  // The core
  const AppInfo appInfo{bundle_.environment()};
  Preferences preferences{*suite_, *runLoop_};
  LocalVideoDBManager library;
  VideoPlayerManager videoPlayerManager;
  Standstill standstill;
  PauseRules pauseRules;
  StatusBarManager statusBarManager;
  WebModel webModel;
  AppDelegate delegate;

 private:
  std::vector<Disposable> observations_;
};

}  // namespace quilex
