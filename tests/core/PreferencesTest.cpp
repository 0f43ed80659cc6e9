#include <cmath>
#include <sstream>

#include "settings/Preferences.h"
#include "support/Fakes.h"

namespace quilex::test {

using namespace std::literals;
using Values = decltype(FakeSettingsSuite::values);

struct PreferencesTest : testing::Test {
  FakeRunLoop runLoop;
  FakeSettingsSuite suite;
};

TEST_F(PreferencesTest, WhatIsStoredStaysEvenIfItIsZeroOrOfAnotherType) {
  suite.values = {{"Volume", 0.0F},          {"autolaunch", "yes"s}, {"Mute", true},
                  {"IsOpenPlayer", false},   {"isPlaying", 1L},      {"PlayMode", "2"s},
                  {"CurrentVideoSign", true}};
  const Preferences preferences(suite, runLoop);
  EXPECT_EQ(suite.writes, "");
  EXPECT_EQ(preferences.volume.get(), 0.0F);
  EXPECT_FALSE(preferences.isPlaying.get());
  EXPECT_EQ(preferences.playingVideoSign.get(), std::nullopt);
}

TEST_F(PreferencesTest, AFirstRunWritesTheDefaultsAndSettersWriteThroughAndMostSynchronise) {
  Preferences preferences(suite, runLoop);
  EXPECT_EQ(suite.writes, " autolaunch=yes Volume=0.5 Mute=no IsOpenPlayer=yes isPlaying=yes");
  EXPECT_EQ(suite.synchronisations, 1);
  suite.writes.clear();
  suite.synchronisations = 0;
  preferences.monitorArrange.set(2);
  preferences.screenIndex.set(1);
  preferences.playModel.set(2);
  preferences.playingVideoSign.set("A");
  preferences.volume.set(0.25F);
  preferences.mute.set(true);
  preferences.isOpenPlayer.set(true);
  preferences.isPlaying.set(false);
  preferences.alreadyImportVideo.set(true);
  preferences.autolaunch.set(false);
  EXPECT_EQ(suite.synchronisations, 8) << "the last two may follow later";
  EXPECT_EQ(suite.writes,
            " MonitorArrange=2 ScreenIndex=1 PlayMode=2 CurrentVideoSign=A Volume=0.25 Mute=yes IsOpenPlayer=yes "
            "isPlaying=no alreadyImportVideo=yes autolaunch=no");
  preferences.playingVideoSign.set(std::nullopt);
  EXPECT_FALSE(suite.contains("CurrentVideoSign"));
}

TEST_F(PreferencesTest, OnceASecondWhatAnotherProcessChangedIsNotifiedAndOnlyWhatFollowsFromItIsWritten) {
  const Values closed{{"IsOpenPlayer", false}, {"isPlaying", false}, {"CurrentVideoSign", "A"s}};
  const Values closedPlaying{{"IsOpenPlayer", false}, {"isPlaying", true}};
  const Values open{{"IsOpenPlayer", true}, {"isPlaying", true}, {"CurrentVideoSign", "A"s}};
  const std::string opened = " IsOpenPlayer=1 isPlaying=1";
  const std::tuple<Values, Values, std::string, std::string> cases[] = {
      {closed, {{"CurrentVideoSign", "B"s}}, " CurrentVideoSign=B" + opened, " IsOpenPlayer=yes isPlaying=yes"},
      {open, {{"CurrentVideoSign", "B"s}}, " CurrentVideoSign=B", ""},
      // Of another type is as good as removed.
      {closed,
       {{"CurrentVideoSign", 0L}},
       " CurrentVideoSign=" + opened,
       " CurrentVideoSign= IsOpenPlayer=yes isPlaying=yes"},
      {closed, {{"IsOpenPlayer", true}}, opened, " isPlaying=yes"},
      {closedPlaying, {{"IsOpenPlayer", true}, {"isPlaying", false}}, opened, " isPlaying=yes"},
      {open, {{"IsOpenPlayer", false}, {"isPlaying", false}}, " IsOpenPlayer=0 isPlaying=0", ""},
      {open,
       {{"MonitorArrange", 2L}, {"ScreenIndex", 1L}, {"PlayMode", 2L}, {"Mute", true}, {"alreadyImportVideo", true}},
       " MonitorArrange=2 ScreenIndex=1 PlayMode=2 Mute=1 alreadyImportVideo=1",
       ""},
      {open,
       {{"Volume", 0.25F}, {"isPlaying", false}, {"autolaunch", false}},
       " Volume=0.25 isPlaying=0 autolaunch=0",
       ""},
      // Not a number differs from itself, and is applied each second.
      {open, {{"Volume", std::nanf("")}}, " Volume=nan Volume=nan Volume=nan", ""}};
  for (const auto& [before, changed, notified, written] : cases) {
    suite.values = before;
    Preferences preferences(suite, runLoop);
    std::ostringstream log;
    std::vector<Disposable> tokens;
    const auto watch = [&](const char* key, auto& property) {
      tokens.push_back(property.observe([&log, key](const auto& value) { log << ' ' << key << '=' << value; }));
    };
    watch("MonitorArrange", preferences.monitorArrange);
    watch("ScreenIndex", preferences.screenIndex);
    watch("PlayMode", preferences.playModel);
    tokens.push_back(preferences.playingVideoSign.observe(
        [&](const auto& sign) { log << " CurrentVideoSign=" << sign.value_or("none"); }));
    watch("Volume", preferences.volume);
    watch("Mute", preferences.mute);
    watch("alreadyImportVideo", preferences.alreadyImportVideo);
    watch("IsOpenPlayer", preferences.isOpenPlayer);
    watch("isPlaying", preferences.isPlaying);
    watch("autolaunch", preferences.autolaunch);
    std::ranges::for_each(changed, [&](const auto& each) { suite.values[each.first] = each.second; });
    suite.writes.clear();
    suite.synchronisations = 0;
    runLoop.advance(999ms);
    EXPECT_EQ(log.str(), "");
    runLoop.advance(2001ms);
    EXPECT_EQ(log.str(), notified);
    EXPECT_EQ(suite.writes, written) << notified;
    EXPECT_EQ(suite.synchronisations, std::ranges::count(written, ' ')) << notified;
  }
}

}  // namespace quilex::test
