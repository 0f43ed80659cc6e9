#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

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
#include "platform/InterfaceWindow.h"
#include "platform/Localization.h"
#include "platform/NotificationCenter.h"
#include "platform/StatusReport.h"
#include "playback/VideoPlayerManager.h"
#include "service/WebModel.h"
#include "settings/Preferences.h"
#include "ui/StatusBarManager.h"

namespace quilex {

/// Builds the core over the Linux adapters. The core's own objects are made on first use, through the shared()
/// accessors of their classes, which answer from the one composition of the process.
class Composition {
 public:
  /// Why the agent cannot start, in one line.
  struct Failure {
    std::string message;
  };

  /// Opens the settings and chooses the renderer. `backendReason` says why another kind of desktop was not taken.
  /// `desktopLost` is called once if the desktop goes away.
  static std::variant<std::unique_ptr<Composition>, Failure> make(std::unique_ptr<Desktop> desktop,
                                                                  std::string backendReason,
                                                                  std::function<void()> desktopLost);
  ~Composition();
  Composition(const Composition&) = delete;
  Composition& operator=(const Composition&) = delete;

  /// The composition of the process; asking before it is made stops the process.
  static Composition& instance();

  const AppInfo& appInfo();
  Preferences& preferences();
  LocalVideoDBManager& library();
  VideoPlayerManager& videoPlayerManager();
  StatusBarManager& statusBarManager();
  WebModel& webModel();
  DistributedNotificationCenter& notificationCenter() { return notifications_; }
  WindowServer& windowServer() { return *windows_; }
  Workspace& workspace() { return session_; }
  RunLoop& eventLoop() { return *runLoop_; }
  LoadInterfaceFile interfaceFiles();
  static Localize localization();

  /// Writes the settings that are still to be written, waiting a moment for other programs if need be. Any thread.
  void writeSettings();

  /// The menu's wish for an update check, which the delegate answers.
  std::function<void()> checkUpdates;

 private:
  struct Suites {
    std::unique_ptr<JsonSettingsSuite> shared;
    std::unique_ptr<JsonSettingsSuite> standardDefaults;
  };

  struct Start {
    std::unique_ptr<Desktop> desktop;
    /// Why the desktop that comes first was not taken.
    std::string backendReason;
    Suites suites;
    std::unique_ptr<QtRunLoop> loop;
    std::unique_ptr<Renderer> renderer;
    std::string rendererReason;
  };

  explicit Composition(Start start);
  void reportStart(const Start& start);
  void reportDisplays();

  // In the order of dependence: what comes later uses what comes before.
  std::unique_ptr<QtRunLoop> runLoop_;
  StandardConsole console_;
  StatusReport report_;
  ThreadedFileFinder fileFinder_{*runLoop_};
  LinuxBundle bundle_ = LinuxBundle::main();
  DBusNotificationCenter notifications_;
  QtBackgroundWork backgroundWork_;
  LinuxWorkspace session_{backgroundWork_};
  LocalWallClock wallClock_;
  NotificationCenter processNotifications_;
  Suites suites_;
  std::unique_ptr<Desktop> desktop_;
  Renderer& renderer_;
  VideoOutput output_;
  std::unique_ptr<WindowServer> windows_;
  std::unique_ptr<AppInfo> info_;
  std::unique_ptr<Preferences> settings_;
  std::unique_ptr<LocalVideoDBManager> videos_;
  std::unique_ptr<VideoPlayerManager> manager_;
  std::unique_ptr<StatusBarManager> statusBar_;
  std::unique_ptr<WebModel> web_;
  std::vector<Disposable> reporting_;
  AgentObject object_{report_};
};

}  // namespace quilex
