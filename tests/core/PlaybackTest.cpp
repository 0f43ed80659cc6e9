#include "playback/ScreenLayout.h"
#include "support/AgentTest.h"

namespace quilex::test {

using namespace std::literals;
using Type = VideoPlayerScreenType;
constexpr const char* kSign = Preferences::Key::currentVideoSign;

TEST(ScreenLayoutTest, ChoosesScreensLaysOutViewsAndTellsWhenTheyNoLongerFit) {
  const Screen left{"left", {-1280, 0, 1280, 800}}, main{"main", {0, 0, 1440, 900}};
  EXPECT_EQ(playerViewRects(Type::combo, {left, main}), (std::vector<Rect>{{0, 0, 2720, 900}, {-1280, 0, 2720, 900}}));
  // The origin of the global space belongs to the picture even where no screen covers it.
  EXPECT_EQ(playerViewRects(Type::combo, {{"", {100, 50, 10, 10}}}), (std::vector<Rect>{{-100, -50, 110, 60}}));
  for (const int index : {0, 1, 2, -1}) {
    EXPECT_EQ(chooseScreens(Type::lonely, index, {left, main}).at(0).name, index == 1 ? "main" : "left");
  }
  EXPECT_TRUE(chooseScreens(Type::lonely, 0, {}).empty());
  EXPECT_FALSE(needsRelayout({left, main}, {main, left}));
}

using PlaybackTest = AgentTest;

TEST_F(PlaybackTest, LaunchPlaysInAWindowOnEachScreen) {
  add({"a", "b", "C"});
  launch({{"isPlaying", false}, {"Volume", 0.5F}, {"Mute", true}});
  EXPECT_EQ(commands(), " play play C") << "past the videos without a file; playing is set, which plays again";
  EXPECT_EQ(std::tuple(player->amplitude, player->muted, suite.string(kSign)), std::tuple(0.5F, true, "C"));
  const AgentStatus told = report.read();
  EXPECT_EQ(std::tuple(told.isOpen, told.isPlaying, told.volume, told.libraryVideos), std::tuple(true, true, 0.5, 3U));
  preferences->volume.set(0.25F);
  EXPECT_EQ(player->amplitude, 0.25F);
  preferences->isOpenPlayer.set(false);
  preferences->isOpenPlayer.set(true);
  EXPECT_TRUE(windowServer.orders.at(0).ends_with(" out back")) << "at once";
  EXPECT_EQ(commands(), " pause C play");
  auto& window = *windowServer.made.at(1);
  EXPECT_EQ(window.view->frame, (Rect{-1920, 0, 3840, 1080}));
  EXPECT_TRUE(window.view->player == player && window.orders.ends_with(" back"));
  EXPECT_EQ(window.view->videoGravity, VideoGravity::resizeAspectFill);
  window.view->mouseDown();
  window.view->touchesBegan();
  window.click();
  EXPECT_EQ(console.lines, (std::vector{folder / "Quilex.db", "mouse down"s, "123"s, "tapVideoPlayerViewAction"s}));
}

TEST_F(PlaybackTest, ThePlayModelChoosesWhatFollowsAnEndOrAFailure) {
  add({"A", "B", "C"});
  for (const std::int64_t model : {0, 1, 2, 7, -1}) {
    launch({{"PlayMode", model}, {kSign, "B"s}});
    status(PlayerItemStatus::readyToPlay);
    EXPECT_EQ(report.read().videoSign + report.read().videoState, "Bready");
    end();
    console.logged.clear();
    status(PlayerItemStatus::failed);
    const bool goesOn = model == 1 || model == 2;
    // Why it failed, and what came next.
    EXPECT_EQ(report.read().videoSign + report.read().videoState, goesOn ? "Aloading" : "Bfailed");
    EXPECT_TRUE(console.logged.at(0).starts_with(goesOn ? "video C cannot" : "video B cannot"));
    EXPECT_EQ(console.logged.back().starts_with("loads video A,"), goesOn);
    EXPECT_EQ(commands() + *suite.string(kSign), goesOn ? " play B C AA" : " play B seek seekB") << model;
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
  EXPECT_EQ(commands(), " play C B A") << "from the head of the new order, not from the video that ended";
  std::set<std::string> all;
  for (std::size_t draw = 0; draw < 6; ++draw) {
    random = [draw](std::size_t bound) { return bound == 3 ? draw / 2 : draw % bound; };
    libraryChanged();
    all.insert(manager->videoList().head()->sign + manager->videoList().tail()->sign);
  }
  EXPECT_EQ(all.size(), 6U);
  preferences->playModel.set(1);
  EXPECT_EQ(manager->videoList().head()->sign + manager->videoList().tail()->sign, "AC") << "in order again";
  preferences->playModel.set(2);
  int draws = 0;
  random = [&](std::size_t) { return (++draws, 0U); };
  center.names["UpdateVideoList"].notify();
  libraryChanged();
  EXPECT_EQ(draws, 3) << "notified together, changes are one";
}

TEST_F(PlaybackTest, WhenAllHaveFailedInTurnTheNextRoundWaitsASecond) {
  using enum PlayerItemStatus;
  add({"A", "B", "C"});
  launch({{"PlayMode", 1L}});
  for (const auto next : {failed, readyToPlay, failed, readyToPlay, failed}) {
    status(next);
  }
  libraryChanged();
  EXPECT_EQ(commands(), " play A B C") << "a first frame does not make up for a failure";
  runLoop.advance(999ms);
  EXPECT_EQ(commands(), "");
  runLoop.advance(1ms);
  status(failed);
  end();
  status(failed);
  EXPECT_EQ(commands(), " A B C A") << "a video that plays to its end begins a new round";
  status(failed);
  status(failed);
  preferences->playingVideoSign.set("B");
  EXPECT_EQ(commands(), " B pause B play") << "a choice does not wait";
  status(readyToPlay);
  runLoop.advance(5s);
  EXPECT_EQ(commands(), "");
}

TEST_F(PlaybackTest, WithoutAFileNothingIsLoadedUntilOneAppears) {
  launch({});
  end();
  EXPECT_EQ(runLoop.timers.size(), 1U) << "an empty library is not looked through, only the settings are";
  add({"a", "b"});
  libraryChanged();
  folder.write("b");
  runLoop.advance(999ms);
  EXPECT_EQ(commands(), " play");
  runLoop.advance(1ms);
  EXPECT_EQ(commands() + *suite.string(kSign), " bb");
  std::filesystem::remove(folder / "b");
  launch({});
  folder.write("a");
  libraryChanged();
  runLoop.advance(0ms);
  EXPECT_EQ(commands(), " play a") << "a changed library is looked through at once";
  std::filesystem::remove(folder / "a");
  launch({{kSign, "b"s}});
  sql("delete from LocalVideos");
  libraryChanged();
  EXPECT_EQ(suite.string(kSign), "b") << "nothing was started";
}

TEST_F(PlaybackTest, TheSignIsFollowedWhereItsFileExists) {
  add({"A", "B", "c"});
  launch({{"IsOpenPlayer", false}});
  EXPECT_EQ(commands(), " pause A");
  for (const auto& [sign, expected] : {std::pair("B"s, " pause B play"), {"c"s, ""}, {"B"s, ""}}) {
    suite.values[kSign] = sign;
    runLoop.advance(1s);
    EXPECT_EQ(commands(), expected) << "c has no file, and B plays on";
  }
  EXPECT_EQ(console.lines.back(), "delete c true");
  preferences->playModel.set(1);
  add({"D"});
  libraryChanged();
  suite.values[kSign] = "A"s;
  end();
  EXPECT_EQ(commands() + *suite.string(kSign), " DA") << "a choice that has not been read yet stays";
  runLoop.advance(1s);
  EXPECT_EQ(commands(), " pause A play") << "and is followed";
  EXPECT_DEATH(preferences->playingVideoSign.set(std::nullopt), "sign of the playing video");
}

TEST_F(PlaybackTest, AnEmptyLibraryContradictsASignButAnUnreadableOneDoesNot) {
  EXPECT_DEATH(launch({{kSign, "A"s}}), "sign of the playing video");
  add({"A"});
  launch({});
  sql("alter table LocalVideos rename to Other");
  libraryChanged();
  end();
  EXPECT_EQ(commands() + *suite.string(kSign), " play A seekA");
  EXPECT_EQ(manager->videoList().size(), 1U) << "what was known holds";
  preferences->playingVideoSign.set("B");
  runLoop.advance(20s);
  sql("alter table Other rename to LocalVideos");
  add({"B"});
  runLoop.advance(10s);
  EXPECT_EQ(manager->videoList().size(), 2U) << "read again by itself";
  EXPECT_EQ(commands(), " pause B play") << "and then the choice is followed";
  EXPECT_EQ(console.lines.size(), 1U) << "no row was deleted";
  sql("delete from LocalVideos");
  libraryChanged();
  EXPECT_DEATH(end(), "sign of the playing video");
}

TEST_F(PlaybackTest, ALibraryMayBeEmptiedAtAnyTime) {
  // As the companion does it; an agent that does not react in time is not waited for.
  const auto removeAll = [&](std::chrono::seconds reaction) {
    suite.values["LibraryWasEmptied"] = true;
    suite.values["IsOpenPlayer"] = false;
    runLoop.advance(reaction);
    sql("delete from LocalVideos");
    libraryChanged();
  };
  const std::function<void()> deeds[] = {[&] { removeAll(1s); },
                                         [&] { removeAll(0s); },
                                         [&] { choose(4); },
                                         [&] { write("IsOpenPlayer", true); },
                                         [&] { preferences->playModel.set(2); },
                                         [&] { end(); },
                                         [&] { launch(suite.values); }};
  constexpr std::size_t kDeeds = std::size(deeds);
  for (std::size_t sequence = 0; sequence < kDeeds * kDeeds * kDeeds; ++sequence) {
    add({"A"});
    launch({});
    deeds[sequence % 2]();
    for (std::size_t rest = sequence, step = 0; step < 3; ++step, rest /= kDeeds) {
      deeds[rest % kDeeds]();
    }
    EXPECT_EQ(manager->videoList().size(), 0U);
  }
  // The last row may also go because its file is missing.
  add({"A", "b"});
  launch({});
  sql("delete from LocalVideos where sign = 'A'");
  preferences->playingVideoSign.set("b");
  libraryChanged();
  end();
  EXPECT_EQ(suite.string(kSign), std::nullopt);
  // Or while a file is looked for.
  add({"A", "B"});
  launch({{"PlayMode", 2L}, {"LibraryWasEmptied", true}});
  finder.hanging = {"B"};
  preferences->isOpenPlayer.set(false);
  end();
  preferences->isOpenPlayer.set(true);
  sql("delete from LocalVideos");
  end();
  runLoop.advance(5s);
  EXPECT_TRUE(commands().ends_with(" play seek"));
}

TEST_F(PlaybackTest, AFileSystemThatDoesNotAnswerHoldsNothingElseUp) {
  add({"A", "B", "C", "D"});
  launch({{"PlayMode", 1L}});
  finder.hanging = {"B", "D"};
  end();
  runLoop.advance(1s);
  libraryChanged();
  preferences->playModel.set(2);
  runLoop.advance(1999ms);
  EXPECT_EQ(commands() + *suite.string(kSign), " play AA");
  runLoop.advance(1ms);
  EXPECT_EQ(commands() + *suite.string(kSign), " CC") << "it was still B's turn";
  end();
  preferences->playingVideoSign.set("A");
  runLoop.advance(5s);
  EXPECT_EQ(commands(), " pause A play") << "a choice takes the place of the search";
  preferences->playingVideoSign.set("D");
  end();
  runLoop.advance(2s);
  EXPECT_EQ(commands() + *suite.string(kSign), " CC") << "what does not answer is not followed";
  for (const char* last : {"C", "A"}) {
    preferences->playingVideoSign.set("B");
    libraryChanged();
    preferences->playingVideoSign.set(last);
    runLoop.advance(5s);
  }
  EXPECT_EQ(commands(), " pause A play") << "a later choice takes the place of an earlier one";
  EXPECT_EQ(console.lines.size(), 1U) << "no row was deleted";
  for (auto* setting : {&preferences->isOpenPlayer, &preferences->isPlaying}) {
    const std::string sign = suite.string(kSign) == "A" ? "C" : "A";
    preferences->playingVideoSign.set(sign);
    setting->set(false);
    settle();
    EXPECT_EQ(std::pair(player->item, player->plays), std::pair(sign, false)) << "closed or paused, it stays so";
    setting->set(true);
    settle();
    EXPECT_EQ(std::pair(suite.string(kSign), player->plays), std::pair(std::optional(sign), true));
  }
}

TEST_F(PlaybackTest, WhatBringsTheAgentDownWhileItIsLoadedIsPassedOverUntilChosen) {
  add({"A", "B"});
  launch({{"PlayMode", 1L}});
  status(PlayerItemStatus::readyToPlay);
  EXPECT_FALSE(defaults.contains("LoadingVideo"));
  end();
  end();
  EXPECT_EQ(defaults.string("LoadingVideo"), "A");
  launchAfterCrash({{"PlayMode", 1L}, {kSign, "A"s}});
  status(PlayerItemStatus::readyToPlay);
  end();
  EXPECT_EQ(commands(), " play B B") << "nor in the next round";
  launchAfterCrash({{kSign, "A"s}});
  EXPECT_EQ(commands(), " play B");
  status(PlayerItemStatus::failed);
  EXPECT_NE(console.warnings.at(0).find("video A "), std::string::npos);
  preferences->playingVideoSign.set("A");
  EXPECT_EQ(commands(), " seek pause A play");
  status(PlayerItemStatus::readyToPlay);
  launchAfterCrash({{kSign, "A"s}});
  EXPECT_EQ(commands(), " play A") << "chosen, it has shown";
  sql("delete from LocalVideos where sign = 'B'");
  launchAfterCrash({{kSign, "A"s}});
  runLoop.advance(5s);
  EXPECT_EQ(commands(), " play") << "the only one";
  defaults.values.erase("RefusedVideo/A");
  libraryChanged();
  EXPECT_EQ(commands(), " A");
  status(PlayerItemStatus::failed);
  EXPECT_FALSE(defaults.contains("LoadingVideo"));
  manager->playCurrent();
  settle();
  EXPECT_TRUE(defaults.contains("LoadingVideo"));
  delegate->applicationWillTerminate();
  launchAfterCrash({{kSign, "A"s}});
  EXPECT_EQ(commands(), " play A") << "it was an end in good order";
  EXPECT_EQ(console.warnings.size(), 2U);
}

TEST_F(PlaybackTest, ThePlayerRepeatsAVideoThatIsFollowedByItself) {
  add({"A", "B"});
  launch({});
  EXPECT_TRUE(player->repeats);
  preferences->playModel.set(1);
  EXPECT_FALSE(player->repeats);
  const auto repeatsAfter = [&](const std::string& change) {
    sql(change);
    libraryChanged();
    return player->repeats;
  };
  EXPECT_TRUE(repeatsAfter("delete from LocalVideos where sign = 'B'"));
  EXPECT_FALSE(repeatsAfter("update LocalVideos set sign = 'B', url = '" + folder / "B" + "'"))
      << "another one follows";
  end();
  EXPECT_TRUE(player->repeats);
  preferences->playModel.set(0);
  EXPECT_FALSE(repeatsAfter("delete from LocalVideos")) << "the end is of interest";
}

TEST_F(PlaybackTest, TheWindowsFollowTheLayoutAndTheScreens) {
  add({"A"});
  launch({{"MonitorArrange", 5L}});
  EXPECT_EQ(windowServer.made.at(1)->view->frame, (Rect{0, 0, 1920, 1080})) << "5 means dynamic at launch";
  delegate->applicationDidChangeScreenParameters();
  EXPECT_EQ(windowServer.made.size(), 2U) << "the same screens";
  windowServer.currentScreens[0].frame.height = 1200;
  delegate->applicationDidChangeScreenParameters();
  EXPECT_EQ(windowServer.made.at(2)->view->frame, (Rect{0, 0, 1920, 1200}));
  preferences->monitorArrange.set(0);
  EXPECT_EQ(windowServer.made.at(5)->view->frame, (Rect{-1920, 0, 3840, 1200}));
  preferences->screenIndex.set(1);
  EXPECT_EQ(windowServer.made.at(6)->screen.name, "right") << "choosing a screen shows on it alone";
  delegate->applicationDidChangeScreenParameters();
  EXPECT_EQ(windowServer.made.size(), 8U) << "one of several screens is laid out anew at any change";
  preferences->monitorArrange.set(1);
  preferences->monitorArrange.set(5);
  EXPECT_TRUE(manager->valueForKey("screenType") == 2 && manager->valueForKey("screenIndex") == 1);
  EXPECT_EQ(std::ranges::count_if(windowServer.orders, [](const auto& all) { return !all.ends_with(" gone"); }), 1)
      << "5 means lonely on a change";
}

}  // namespace quilex::test
