#include <set>

#include "playback/ScreenLayout.h"
#include "support/AgentTest.h"

namespace quilex::test {

using namespace std::literals;
using Type = VideoPlayerScreenType;
constexpr const char* kSign = Preferences::Key::currentVideoSign;

TEST(VideoInfoListTest, AHugeListIsReleasedWithoutRecursion) {
  VideoInfoList list;
  for (int count = 0; count < 200000; ++count) {
    list.append({});
  }
  list.clear();
  EXPECT_EQ(list.current(), nullptr);
}

TEST(ScreenLayoutTest, ChoosesScreensLaysOutViewsAndTellsWhenTheyNoLongerFit) {
  const Screen left{"left", {-1280, 0, 1280, 800}};
  const Screen main{"main", {0, 0, 1440, 900}};
  EXPECT_EQ(playerViewFrames(Type::combo, {left, main}), (std::vector<Rect>{{0, 0, 2720, 900}, {-1280, 0, 2720, 900}}));
  // The origin of the global space belongs to the picture even where no screen covers it.
  EXPECT_EQ(playerViewFrames(Type::combo, {{"", {100, 50, 10, 10}}}), (std::vector<Rect>{{-100, -50, 110, 60}}));
  for (const auto& [index, name] : {std::pair(0, "left"), {1, "main"}, {3, "left"}, {-1, "left"}}) {
    EXPECT_EQ(chooseScreens(Type::lonely, index, {left, main}).at(0).name, name);
  }
  EXPECT_TRUE(chooseScreens(Type::lonely, 0, {}).empty());
  EXPECT_FALSE(needsRelayout({left, main}, {main, left}));
  EXPECT_TRUE(needsRelayout({left, main}, {main}));
  EXPECT_TRUE(needsRelayout({left, main}, {main, {"left", {-1280, 1, 1280, 800}}}));
}

using PlaybackTest = AgentTest;

TEST_F(PlaybackTest, LaunchPlaysInAWindowOnEachScreen) {
  add({"a", "b", "C"});
  launch({{"isPlaying", false}, {"Volume", 0.25F}, {"Mute", true}});
  EXPECT_EQ(commands(), " C play play") << "past the videos without a file; playing is set, which plays again";
  EXPECT_EQ(suite.string(kSign), "C");
  EXPECT_EQ(std::pair(player->amplitude, player->muted), std::pair(0.25F, true));
  auto& window = *windowServer.made.at(1);
  EXPECT_EQ(window.view->frame, (Rect{-1920, 0, 3840, 1080}));
  EXPECT_EQ(window.view->player, player);
  EXPECT_EQ(window.view->videoGravity, VideoGravity::resizeAspectFill);
  EXPECT_TRUE(window.orders.ends_with(" back"));
  window.view->mouseDown();
  window.view->touchesBegan();
  window.click();
  EXPECT_EQ(console.lines, (std::vector{folder / "Quilex.db", "mouse down"s, "123"s, "tapVideoPlayerViewAction"s}));
  delegate.applicationWillTerminate();
  EXPECT_EQ(center.posted, " com.dravo.quilex.mac.ter");
}

TEST_F(PlaybackTest, ThePlayModelChoosesWhatFollowsAnEndOrAFailure) {
  add({"A", "B", "C"});
  const std::tuple<std::int64_t, std::string, std::string> cases[] = {
      {0, " seek seek", "B"}, {1, " C A", "A"}, {2, " C A", "A"}, {7, " seek seek", "B"}, {-1, " seek seek", "B"}};
  for (const auto& [model, expected, sign] : cases) {
    launch({{"PlayMode", model}, {kSign, "B"s}});
    EXPECT_EQ(commands(), " B play");
    status(PlayerItemStatus::readyToPlay);
    end();
    status(PlayerItemStatus::failed);
    EXPECT_EQ(commands(), expected) << model;
    EXPECT_EQ(suite.string(kSign), sign) << model;
  }
  preferences->playModel.set(1);
  add({"D"});
  libraryChanged();
  EXPECT_EQ(commands(), "") << "what plays is not interrupted";
}

TEST_F(PlaybackTest, RandomShufflesAtEachWrapIntoAnyOrder) {
  add({"A", "B", "C"});
  launch({{"PlayMode", 2L}, {kSign, "C"s}});
  random = [](std::size_t bound) { return bound == 3 ? 1U : 0U; };
  end();
  end();
  EXPECT_EQ(commands(), " C play B A") << "from the head of the new order, not from the video that ended";
  std::set<std::string> all;
  for (std::size_t draw = 0; draw < 6; ++draw) {
    random = [draw](std::size_t bound) { return bound == 3 ? draw / 2 : draw % bound; };
    libraryChanged();
    all.insert(manager->videoList().head()->val.sign + manager->videoList().tail()->val.sign);
  }
  EXPECT_EQ(all.size(), 6U);
  sql("alter table LocalVideos rename to Away");
  commands();
  for (int count = 0; count < 3; ++count) {
    end();
  }
  EXPECT_EQ(commands().size(), std::size(" A B C") - 1) << "what is known goes on";
}

TEST_F(PlaybackTest, WhenAllHaveFailedInTurnTheNextRoundWaitsASecond) {
  using enum PlayerItemStatus;
  add({"A", "B", "C"});
  launch({{"PlayMode", 1L}});
  for (const auto next : {failed, failed, readyToPlay, failed, failed, failed}) {
    status(next);
  }
  runLoop.advance(999ms);
  EXPECT_EQ(commands(), " A play B C A B") << "a video that plays ends the count";
  runLoop.advance(1ms);
  EXPECT_EQ(commands(), " C");
}

TEST_F(PlaybackTest, WithoutAFileNothingIsLoadedUntilOneAppears) {
  launch({});
  end();
  EXPECT_EQ(commands(), " play");
  EXPECT_EQ(runLoop.timers.size(), 1U) << "an empty library is not looked through, only the settings are";
  add({"a", "b"});
  libraryChanged();
  runLoop.advance(500ms);
  folder.write("b");
  runLoop.advance(499ms);
  EXPECT_EQ(commands(), "");
  runLoop.advance(1ms);
  EXPECT_EQ(commands(), " b");
  EXPECT_EQ(suite.string(kSign), "b");
  std::filesystem::remove(folder / "b");
  launch({});
  folder.write("a");
  libraryChanged();
  runLoop.advance(0ms);
  EXPECT_EQ(commands(), " play a") << "a changed library is looked through at once";
}

TEST_F(PlaybackTest, TheSignIsFollowedWhereItsFileExists) {
  add({"A", "B", "c"});
  launch({{"IsOpenPlayer", false}});
  EXPECT_EQ(commands(), " A pause");
  suite.values[kSign] = "B"s;
  runLoop.advance(1s);
  EXPECT_TRUE(commands().starts_with(" pause B play"));
  suite.values[kSign] = "c"s;
  runLoop.advance(1s);
  EXPECT_EQ(console.lines.back(), "delete c true");
  suite.values[kSign] = "B"s;
  runLoop.advance(1s);
  EXPECT_EQ(commands(), "") << "B plays on";
  EXPECT_DEATH(preferences->playingVideoSign.set(std::nullopt), "sign of the playing video");
}

TEST_F(PlaybackTest, AnEmptyLibraryContradictsASignButAnUnreadableOneDoesNot) {
  EXPECT_DEATH(launch({{kSign, "A"s}}), "sign of the playing video");
  add({"A"});
  launch({});
  sql("alter table LocalVideos rename to Other");
  libraryChanged();
  end();
  EXPECT_EQ(commands(), " A play seek");
  EXPECT_EQ(suite.string(kSign), "A");
  EXPECT_EQ(manager->videoList().size(), 1U) << "what was known holds";
  preferences->playingVideoSign.set("b");
  EXPECT_EQ(console.lines.back(), folder / "Quilex.db") << "nothing is deleted";
  preferences->playingVideoSign.set("A");
  sql("alter table Other rename to LocalVideos");
  add({"B"});
  runLoop.advance(10s);
  EXPECT_EQ(manager->videoList().size(), 2U) << "read again by itself";
  sql("delete from LocalVideos");
  libraryChanged();
  EXPECT_DEATH(end(), "sign of the playing video");
}

TEST_F(PlaybackTest, ThePlayerFollowsTheSettings) {
  add({"A"});
  launch({});
  preferences->isPlaying.set(false);
  EXPECT_EQ(orders(0), " back back") << "the paused picture stays";
  windowServer.spaceObservers.notify();
  EXPECT_EQ(orders(0), " back");
  preferences->isOpenPlayer.set(false);
  EXPECT_EQ(commands(), " A play pause pause");
  windowServer.currentScreens.pop_back();
  delegate.applicationDidChangeScreenParameters();
  manager->setHideDesktopIcon(true);
  windowServer.spaceObservers.notify();
  EXPECT_EQ(orders(0), " out") << "closed, neither screens, nor icons, nor workspaces matter";
  preferences->isOpenPlayer.set(true);
  EXPECT_EQ(commands(), " A play");
  EXPECT_EQ(orders(0), " front front");
  preferences->volume.set(0.25F);
  preferences->mute.set(true);
  EXPECT_EQ(std::pair(player->amplitude, player->muted), std::pair(0.25F, true));
}

TEST_F(PlaybackTest, TheWindowsFollowTheLayoutAndTheScreens) {
  add({"A"});
  launch({{"MonitorArrange", 5L}});
  EXPECT_EQ(windowServer.made.at(1)->view->frame, (Rect{0, 0, 1920, 1080})) << "5 means dynamic at launch";
  delegate.applicationDidChangeScreenParameters();
  EXPECT_EQ(windowServer.made.size(), 2U) << "the same screens";
  windowServer.currentScreens[0].frame.height = 1200;
  delegate.applicationDidChangeScreenParameters();
  EXPECT_TRUE(windowServer.orders.at(0).ends_with(" out gone"));
  EXPECT_EQ(windowServer.made.at(2)->view->frame, (Rect{0, 0, 1920, 1200}));
  preferences->monitorArrange.set(0);
  EXPECT_EQ(windowServer.made.at(5)->view->frame, (Rect{-1920, 0, 3840, 1200}));
  preferences->screenIndex.set(1);
  EXPECT_EQ(windowServer.made.at(6)->screen.name, "right") << "choosing a screen shows on it alone";
  delegate.applicationDidChangeScreenParameters();
  EXPECT_EQ(windowServer.made.size(), 8U) << "one of several screens is laid out anew at any change";
  preferences->monitorArrange.set(1);
  preferences->monitorArrange.set(5);
  EXPECT_EQ(manager->valueForKey("screenType"), 2) << "5 means lonely on a change";
  EXPECT_EQ(manager->valueForKey("screenIndex"), 1);
  EXPECT_EQ(std::ranges::count_if(windowServer.orders, [](const auto& all) { return !all.ends_with(" gone"); }), 1);
}

}  // namespace quilex::test
