#include <gmock/gmock.h>

#include "support/AgentTest.h"

namespace quilex::test {

using namespace std::literals;
using testing::HasSubstr;

struct StatusBarTest : AgentTest {
  StatusBarTest() { add({"A", "B"}); }

  static std::shared_ptr<MenuEntry> entry(const MenuItem& item) {
    if (const auto* action = std::get_if<std::shared_ptr<MenuAction>>(&item)) {
      return *action;
    }
    const auto* menu = std::get_if<std::shared_ptr<Menu>>(&item);
    return menu == nullptr ? nullptr : *menu;
  }
  template <typename Kind>
  static Kind& find(const Menu& menu, const std::string& title) {
    for (const auto& item : menu.itemArray()) {
      const auto* found = std::get_if<std::shared_ptr<Kind>>(&item);
      if (found != nullptr && (*found)->title().substr(0, (*found)->title().find('|')) == title) {
        return **found;
      }
    }
    throw std::out_of_range(title);
  }
  MenuAction& item(const std::string& title) const { return find<MenuAction>(*statusItem->menu, title); }
  Menu& screenMenu() const { return find<Menu>(*statusItem->menu, "Screen"); }
  Menu& singleMenu() const { return find<Menu>(screenMenu(), "Single"); }

  // "-" for a separator; else the title, with "*" for a mark, "!" where disabled, "^key" and the submenu.
  static std::string shape(const Menu& menu) {
    std::string text;
    for (const auto& item : menu.itemArray()) {
      text += text.empty() ? "" : ", ";
      const auto shown = entry(item);
      if (!shown) {
        text += "-";
        continue;
      }
      text += shown->title().substr(0, shown->title().find('|'));
      text += std::string(shown->mark().value_or(false) ? "*" : "") + (shown->isEnabled() ? "" : "!");
      const auto* action = std::get_if<std::shared_ptr<MenuAction>>(&item);
      text += action == nullptr || (*action)->keyEquivalent().empty() ? "" : "^" + (*action)->keyEquivalent();
      const auto* submenu = std::get_if<std::shared_ptr<Menu>>(&item);
      text += submenu == nullptr ? "" : " [" + shape(**submenu) + "]";
    }
    return text;
  }
  std::string shape() const { return shape(*statusItem->menu); }
  void screens(std::size_t count) {
    windowServer.currentScreens.clear();
    for (std::size_t index = 0; index < count; ++index) {
      windowServer.currentScreens.push_back({"", {100.0 * double(index), 0, 100, 100}});
    }
    delegate->applicationDidChangeScreenParameters();
    windowServer.screenObservers.notify();
  }
};

TEST_F(StatusBarTest, TheMenuShowsTheSettingsAsTheyAreAtItsFirstBuilding) {
  const std::string first = "Main Window, 1.0.0 (1)!, Check for Updates..., -, ";
  const std::string rest = "-, Screen [Integration*, Mirror, Single [1*^1, 2^2]], -, Quit^q";
  launch({});
  EXPECT_EQ(statusItem->image, "quilex_statusBar");
  EXPECT_EQ(shape(), first + "Close Video Wallpaper, Pause, Hide Desktop Icon, Mute, " + rest);
  launch({{"IsOpenPlayer", false}, {"isPlaying", false}, {"Mute", true}});
  EXPECT_EQ(shape(), first + "Open Video Wallpaper, Play!, Hide Desktop Icon!, Mute*, " + rest);
  for (const auto& [arrangement, index, marks] : {std::tuple(2L, 1L, "Integration, Mirror, Single [1^1, 2*^2]"),
                                                  {3L, 0L, "Integration, Mirror*, Single [1*^1, 2^2]"}}) {
    launch({{"MonitorArrange", arrangement}, {"ScreenIndex", index}});
    EXPECT_EQ(shape(screenMenu()), marks) << arrangement << index;
  }
}

TEST_F(StatusBarTest, TheMenuFollowsTheSettings) {
  launch({});
  preferences->mute.set(true);
  preferences->screenIndex.set(2);
  EXPECT_EQ(shape(singleMenu()), "1^1, 2^2") << "there is no such screen";
  preferences->screenIndex.set(1);
  EXPECT_EQ(shape(screenMenu()), "Integration*, Mirror, Single [1^1, 2*^2]");
  for (const auto& [raw, marks] : {std::pair(2L, "Integration, Mirror, Single* [1^1, 2*^2]"),
                                   {3L, "Integration, Mirror, Single* [1^1, 2*^2]"},
                                   {1L, "Integration, Mirror*, Single [1^1, 2*^2]"}}) {
    preferences->monitorArrange.set(raw);
    EXPECT_EQ(shape(screenMenu()), marks) << raw;
  }
}

TEST_F(StatusBarTest, PictureMenuAndSettingsAgreeAfterAnySequence) {
  launch({{"isPlaying", false}});
  const auto changeScreens = [&] {
    const auto before = windowServer.made.size();
    windowServer.currentScreens[0].frame.height += 1;
    delegate->applicationDidChangeScreenParameters();
    EXPECT_EQ(windowServer.made.size() > before, preferences->isOpenPlayer.get());
  };
  const std::function<void()> deeds[] = {[&] { choose(4); },  // Close
                                         [&] { choose(5); },  // Pause
                                         [&] { choose(6); },  // Hide Desktop Icon
                                         [&] { write("IsOpenPlayer", true); },
                                         [&] { write("IsOpenPlayer", false); },
                                         [&] { write("isPlaying", true); },
                                         [&] { write("isPlaying", false); },
                                         [&] { preferences->playingVideoSign.set(player->item == "A" ? "B" : "A"); },
                                         [&] { changeScreens(); },
                                         [&] { delegate->applicationDidChangeOcclusionState(); },
                                         [&] { windowServer.spaceObservers.notify(); },
                                         [&] { workspace.wakeObservers.notify(); }};
  constexpr std::size_t kDeeds = std::size(deeds);
  for (std::size_t sequence = 0; sequence < kDeeds * kDeeds * kDeeds; ++sequence) {
    for (std::size_t rest = sequence, step = 0; step < 3; ++step, rest /= kDeeds) {
      deeds[rest % kDeeds]();
      runLoop.advance(1s);
      const bool open = suite.boolean("IsOpenPlayer"), playing = suite.boolean("isPlaying");
      const bool hides = manager->isHideDesktopIcon;
      const std::string play = playing ? "Pause" : "Play", mark = hides ? "*" : "";
      ASSERT_THAT(shape(), HasSubstr(open ? "Close Video Wallpaper, " + play + ", Hide Desktop Icon" + mark + ", Mute"
                                          : "Open Video Wallpaper, " + play + "!, Hide Desktop Icon!, Mute"));
      ASSERT_TRUE(windowServer.orders.back().ends_with(!open ? " out" : hides ? " front" : " back")) << sequence;
      ASSERT_EQ(std::pair(player->plays, player->item), std::pair(open && playing, *suite.string("CurrentVideoSign")));
    }
  }
}

TEST_F(StatusBarTest, EachItemDoesWhatItSays) {
  launch({{"CurrentVideoSign", "A"s}});
  commands();
  item("Main Window").choose();
  item("Check for Updates...").choose();
  item("Quit").choose();
  EXPECT_EQ(std::exchange(workspace.log, ""), " com.dravo.quilex.macOS terminate");
  EXPECT_EQ(upgrades.requests.size(), 2U) << "one at launch, one from the menu";

  for (const bool on : {true, false}) {
    orders(0);
    item("Hide Desktop Icon").choose();
    EXPECT_EQ(orders(0), on ? " front" : " back");
    item("Mute").choose();
    EXPECT_EQ(std::tuple(player->muted, suite.boolean("Mute"), item("Mute").mark().value()), std::tuple(on, on, on));
  }
  statusBar->showLocalFileWindow();
  EXPECT_EQ(workspace.log, " mp4 mov");
  workspace.answer(false);
  EXPECT_EQ(commands(), "");
  orders(0);
  preferences->playingVideoSign.assign("B");
  suite.values["CurrentVideoSign"] = "B"s;
  workspace.answer(true);
  EXPECT_EQ(commands() + orders(0), " play back");
  EXPECT_TRUE(suite.writes.ends_with(" CurrentVideoSign=A")) << "what plays";
  find<MenuAction>(singleMenu(), "2").choose();
  EXPECT_EQ(std::pair(suite.integer("MonitorArrange"), suite.integer("ScreenIndex")), std::pair(2L, 1L));
  find<MenuAction>(screenMenu(), "Mirror").choose();
  EXPECT_EQ(std::pair(suite.integer("MonitorArrange"), suite.integer("ScreenIndex")), std::pair(1L, 1L));
}

TEST_F(StatusBarTest, AChangeOfTheScreensBuildsTheMenuAnewOutOfTheSameItems) {
  launch({});
  MenuAction* const mute = &item("Mute");
  screens(1);
  EXPECT_TRUE(shape().ends_with("Mute, -, -, Quit^q")) << shape();
  screens(3);
  EXPECT_EQ(&item("Mute"), mute);
  EXPECT_EQ(shape(singleMenu()), "1*^1, 2^2, 3^3");
  // Each building registers once more, and the settings are followed once all the same.
  windowServer.screenObservers.notify();
  int told = 0;
  const auto tellings = mute->observe([&] { *mute->mark() ? (++told, mute->setMark(false)) : void(); });
  preferences->mute.set(true);
  EXPECT_EQ(told, 1);
  statusBar->removeStatusMenu();
  preferences->mute.set(true);
  EXPECT_EQ(std::pair(told, statusItem->menu), std::pair(1, std::shared_ptr<Menu>()));
  screens(0);
  EXPECT_EQ(manager->windowList().size(), 0U);
}

TEST_F(StatusBarTest, TheDelegateAnswersTheSystem) {
  launch({{"CurrentVideoSign", "A"s}});
  preferences->playingVideoSign.assign("B");
  suite.values["CurrentVideoSign"] = "B"s;
  for (const std::string order : {" back", " front"}) {
    manager->setHideDesktopIcon(order == " front");
    commands();
    orders(0);
    workspace.wakeObservers.notify();
    EXPECT_EQ(commands() + orders(0), " play" + order);
    windowServer.spaceObservers.notify();
    EXPECT_EQ(orders(0), order);
  }
  EXPECT_TRUE(suite.writes.ends_with(" CurrentVideoSign=A")) << "what plays";
  delegate->applicationDidChangeOcclusionState();
  EXPECT_EQ(commands(), " A play");
  delegate->applicationDidResignActive();
  EXPECT_EQ(workspace.startsAtLogin, true) << "from the launch on";
  preferences->autolaunch.set(false);
  EXPECT_EQ(workspace.startsAtLogin, false);
  delegate->applicationWillTerminate();
  delegate->applicationWillTerminate();
  EXPECT_EQ(center.posted, " delivered com.dravo.quilex.mac.ter");
}

}  // namespace quilex::test
