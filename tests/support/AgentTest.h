#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include "agent/AgentReport.h"
#include "agent/AppDelegate.h"
#include "support/Fakes.h"

namespace quilex::test {

/// The agent's core over fakes, with a library in a folder of its own.
struct AgentTest : testing::Test {
  AgentTest() {
    sql("create table LocalVideos(sign, url)");
    windowServer.currentScreens = {{"left", {0, 0, 1920, 1080}}, {"right", {1920, 0, 1920, 1080}}};
  }
  void sql(const std::string& text) const {
    SQLite::Database(folder / "Quilex.db", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("pragma synchronous=off;" + text);
  }
  // Files of small letters do not exist.
  void add(const std::vector<std::string>& signs) const {
    for (const std::string& sign : signs) {
      sql("insert into LocalVideos values('" + sign + "', 'file://" + folder / sign + "')");
      sign < "a" ? folder.write(sign) : sign;
    }
  }
  void launch(const decltype(FakeSettingsSuite::values)& stored) {
    if (manager) {
      manager->willTerminate();
    }
    launchAfterCrash(stored);
  }
  void launchAfterCrash(const decltype(FakeSettingsSuite::values)& stored) {
    delegate.reset();
    statusBar.reset();
    manager.reset();
    suite.values = stored;
    reporting.clear();
    preferences.emplace(suite, runLoop);
    reporting = reportSettings(*preferences, report);
    library.emplace(folder.path, std::nullopt, console);
    manager.emplace(VideoPlayerManager::Services{*preferences, defaults, *library, finder, windowServer, center,
                                                 runLoop, console, [this] { return make(player); },
                                                 [this](std::size_t bound) { return random(bound); }, report});
    statusBar.emplace(StatusBarManager::Services{*preferences, *manager, windowServer, workspace,
                                                 [this] { return make(statusItem); }, localize, "1.0.0 (1)",
                                                 [this] { delegate->checkUpdates(AppDelegate::Check::manual); }});
    delegate.emplace(AppDelegate::Services{*preferences, *manager, *statusBar, upgrades, workspace, center, runLoop,
                                           appInfo,
                                           [this](const std::string& name) -> std::unique_ptr<InterfaceWindow> {
                                             windowLog += " " + name;
                                             return interfaceFilesAreMissing ? nullptr : make(dialog, windowLog);
                                           },
                                           localize});
    delegate->applicationDidFinishLaunching();
    settle();
  }
  /// Makes one, and points to it.
  template <typename Fake, typename... Arguments>
  static std::unique_ptr<Fake> make(Fake*& pointer, Arguments&... arguments) {
    auto made = std::make_unique<Fake>(arguments...);
    pointer = made.get();
    return made;
  }
  /// Runs what waits for the next turn of the run loop.
  void settle() { runLoop.advance(FakeRunLoop::Time(0)); }
  /// Chooses an action by its place in the menu.
  void choose(std::size_t place) const {
    std::get<std::shared_ptr<MenuAction>>(statusItem->menu->itemArray().at(place))->choose();
  }
  std::string commands() {
    settle();
    return std::exchange(player->commands, "");
  }
  /// As another program does it.
  void write(const char* key, bool value) {
    suite.values[key] = value;
    runLoop.advance(std::chrono::seconds(1));
  }
  std::string orders(std::size_t window) { return std::exchange(windowServer.orders.at(window), ""); }
  void libraryChanged() {
    center.names["UpdateVideoList"].notify();
    settle();
  }
  void end() {
    settle();
    player->endObservers.notify();
    settle();
  }
  void status(PlayerItemStatus newStatus) {
    settle();
    player->statusObservers.notify(newStatus);
    settle();
  }
  TemporaryFolder folder;
  FakeRunLoop runLoop;
  FakeSettingsSuite suite;
  /// The agent's own defaults.
  FakeSettingsSuite defaults;
  FakeFileFinder finder{runLoop};
  FakeConsole console;
  StatusReport report;
  std::vector<Disposable> reporting;
  FakeNotificationCenter center;
  FakeWindowServer windowServer;
  std::function<std::size_t(std::size_t)> random = [](std::size_t) { return 0U; };
  FakeVideoPlayer* player = nullptr;
  std::optional<Preferences> preferences;
  std::optional<LocalVideoDBManager> library;
  std::optional<VideoPlayerManager> manager;
  FakeWorkspace workspace;
  FakeStatusItem* statusItem = nullptr;
  std::optional<StatusBarManager> statusBar;
  Localize localize = [](const char* english, const char* comment) { return std::string(english) + "|" + comment; };
  AppInfo appInfo{{{{"CFBundleShortVersionString", "1.0.9"}, {"CFBundleVersion", "0"}}, {}, {}}};
  struct Upgrades : UpgradeInfoSource {
    void requestUpgradeInfo(const Completion& completion) override { requests.push_back(completion); }
    /// Those that wait for an answer.
    std::deque<Completion> requests;
  } upgrades;
  std::string windowLog;
  /// The window that was made last; none while the interface files are missing.
  FakeInterfaceWindow* dialog = nullptr;
  bool interfaceFilesAreMissing = false;
  std::optional<AppDelegate> delegate;
};

}  // namespace quilex::test
