#include "playback/PauseRules.h"
#include "support/AgentTest.h"

namespace quilex::test {

using namespace std::literals;

/// An agent with three reasons to stand still.
struct StandstillTest : AgentTest {
  StandstillTest() { add({"A", "B"}); }
  void begin(const decltype(FakeSettingsSuite::values)& stored) {
    launch(stored);
    for (ObserverList<bool>& source : sources) {
      const std::string clause = "reason " + std::to_string(&source - sources.data());
      tokens.push_back(standstill.respect({clause, [&](auto handler) { return source.add(std::move(handler)); }}));
    }
  }
  using Clauses = std::vector<std::string>;
  Clauses told() const { return report.read().standsStillBecause; }
  std::array<ObserverList<bool>, 3> sources;
  Standstill standstill{runLoop, report, [this](bool isHeld) { manager->setHeld(isHeld); }};
  std::vector<Disposable> tokens;
};

TEST_F(StandstillTest, ReasonsComeAndGoInAnyOrderAndThePersonsPauseStaysThePersons) {
  begin({});
  status(PlayerItemStatus::readyToPlay);
  commands();
  suite.writes.clear();
  std::array<bool, 3> applies{};
  std::optional<FakeRunLoop::Time> since;
  bool plays = true;
  std::uint32_t chance = 1;
  for (int step = 0; step < 5000; ++step) {
    chance = chance * 1664525 + 1013904223;
    const std::uint32_t deed = (chance >> 16) % 8;
    if (deed < 3) {
      // A source may repeat itself.
      applies.at(deed) = (chance >> 24) % 2 == 0;
      sources.at(deed).notify(applies.at(deed));
    } else if (deed == 3) {
      plays = !plays;
      write("isPlaying", plays);
    } else {
      runLoop.advance(std::chrono::milliseconds((chance >> 20) % 700));
    }
    since = std::ranges::count(applies, true) == 0 ? std::nullopt : since ? since : runLoop.now;
    const bool isHeld = since && runLoop.now - *since >= 1s;
    ASSERT_EQ(std::tuple(player->held, player->plays, told().empty()), std::tuple(isHeld, plays, !isHeld)) << step;
    ASSERT_EQ(preferences->isPlaying.get(), plays);
  }
  EXPECT_EQ(commands().find_first_of("AB"), std::string::npos) << "nothing is loaded";
  EXPECT_EQ(suite.writes.find("isPlaying"), std::string::npos);
}

TEST_F(StandstillTest, WhatHoldsIsSaidAndAReasonThatIsNoLongerRespectedEnds) {
  begin({});
  sources[2].notify(true);
  runLoop.advance(999ms);
  EXPECT_EQ(told(), Clauses{});
  runLoop.advance(1ms);
  sources[0].notify(true);
  EXPECT_EQ(told(), (Clauses{"reason 0", "reason 2"})) << "another one counts at once";
  tokens.pop_back();
  EXPECT_EQ(told(), Clauses{"reason 0"});
  tokens.clear();
  EXPECT_EQ(std::pair(told(), player->held), std::pair(Clauses{}, false));
}

TEST_F(StandstillTest, AHeldAgentFollowsItsSettingsAndLooksForNothing) {
  begin({});
  status(PlayerItemStatus::readyToPlay);
  sources[0].notify(true);
  runLoop.advance(1s);
  commands();
  delegate->applicationDidChangeOcclusionState();
  preferences->playingVideoSign.set("B");
  EXPECT_EQ(commands(), " A play pause B play") << "the player loads it later";
  EXPECT_FALSE(defaults.contains("LoadingVideo")) << "an end of power is no fault of a video that is not loaded yet";
  sources[0].notify(false);
  EXPECT_EQ(defaults.string("LoadingVideo"), "B");
  status(PlayerItemStatus::readyToPlay);

  // Neither a held agent nor a closed one goes on looking for files.
  std::filesystem::remove(folder / "A");
  std::filesystem::remove(folder / "B");
  for (const bool closes : {false, true}) {
    preferences->playModel.set(1);
    end();
    closes ? preferences->isOpenPlayer.set(false) : sources[0].notify(true);
    runLoop.advance(3s);
    EXPECT_EQ(runLoop.timers.size(), 1U) << "only the settings are read";
    folder.write("A");
    runLoop.advance(3s);
    EXPECT_EQ(commands().find('A'), std::string::npos);
    closes ? preferences->isOpenPlayer.set(true) : sources[0].notify(false);
    runLoop.advance(1s);
    EXPECT_NE(commands().find('A'), std::string::npos) << closes;
    std::filesystem::remove(folder / "A");
  }
}

TEST_F(StandstillTest, OnlyTheRulesThatAreOnAreWatched) {
  std::map<std::string, StandstillReason::Handler> watched;
  const auto watch = [&](std::string name) -> PauseWatches::Watch {
    return [&, name](StandstillReason::Handler handler) {
      watched[name] = std::move(handler);
      return Disposable([&, name] { watched.erase(name); });
    };
  };
  launch({});
  const PauseRules rules(
      *preferences, standstill,
      {watch("battery"), [&](auto percent, auto handler) { return watch(std::to_string(percent))(handler); },
       watch("saver"), watch("idle"), watch("full"), watch("large"), watch("game"),
       [&](const auto& names, auto handler) { return watch(testing::PrintToString(names))(handler); }});
  EXPECT_TRUE(watched.empty());
  const std::tuple<const char*, decltype(suite.values)::mapped_type, const char*, const char*> table[] = {
      {"PauseOnBattery", true, "battery", "the computer runs on battery"},
      {"PauseBelowCharge", std::int64_t{20}, "20", "the battery has less than 20 %"},
      {"PauseInPowerSaver", true, "saver", "power is to be saved"},
      {"PauseWhenIdle", true, "idle", "nobody uses the computer"},
      {"PauseForFullScreen", true, "full", "a window is full-screen"},
      {"PauseForMaximized", true, "large", "a window is maximised or full-screen"},
      {"PauseForGames", true, "game", "a game runs"},
      {"PauseForPrograms", " vlc,, my game ,", "{ \"vlc\", \"my game\" }", "vlc or my game runs"}};
  for (const auto& [key, value, name, clause] : table) {
    suite.values[key] = value;
    runLoop.advance(1s);
    ASSERT_TRUE(watched.size() == 1 && watched.contains(name)) << key;
    watched[name](true);
    runLoop.advance(1s);
    EXPECT_EQ(told(), Clauses{clause});
    suite.values.erase(key);
    runLoop.advance(1s);
    EXPECT_TRUE(watched.empty() && told().empty()) << key;
  }
  // A rule stays as it is while another one changes.
  suite.values["PauseBelowCharge"] = std::int64_t{20};
  suite.values["PauseOnBattery"] = true;
  runLoop.advance(1s);
  watched["battery"](true);
  suite.values["PauseBelowCharge"] = std::int64_t{30};
  runLoop.advance(1s);
  EXPECT_TRUE(watched.size() == 2 && watched.contains("30"));
  EXPECT_EQ(told(), Clauses{"the computer runs on battery"});
}

TEST_F(StandstillTest, APlayerThatIsMadeLaterIsHeldToo) {
  const auto early = standstill.respect({"early", [](auto handler) { return (handler(true), Disposable([] {})); }});
  manager.emplace(VideoPlayerManager::Services{
      preferences.emplace(suite, runLoop), defaults, library.emplace(folder.path, std::nullopt, console), finder,
      windowServer, center, runLoop, console, [this] { return make(player); }, random, report});
  runLoop.advance(1s);
  manager->buildWindows();
  EXPECT_TRUE(player->held && player->plays);
}

}  // namespace quilex::test
