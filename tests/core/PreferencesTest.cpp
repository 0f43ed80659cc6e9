#include <cmath>

#include "settings/Preferences.h"
#include "support/Fakes.h"

namespace quilex::test {

using namespace std::literals;
using Values = decltype(FakeSettingsSuite::values);

struct PreferencesTest : testing::Test {
  FakeRunLoop runLoop;
  FakeSettingsSuite suite;
};

TEST_F(PreferencesTest, AFirstRunWritesTheDefaultsAndNoMore) {
  const Preferences preferences(suite, runLoop);
  EXPECT_EQ(suite.writes, " autolaunch=yes Volume=0.5 Mute=no IsOpenPlayer=yes isPlaying=yes");
  EXPECT_EQ(suite.synchronisations, 1);
  EXPECT_EQ(preferences.volume.get(), 0.5F);
  EXPECT_EQ(preferences.playingVideoSign.get(), std::nullopt);
}

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

// Applying a value writes it back, so that what is written tells what was applied, and in which order.
TEST_F(PreferencesTest, OnceASecondWhatAnotherProcessChangedIsApplied) {
  const Values closed{{"IsOpenPlayer", false}, {"isPlaying", false}, {"CurrentVideoSign", "A"s}};
  const Values closedPlaying{{"IsOpenPlayer", false}, {"isPlaying", true}};
  const Values open{{"IsOpenPlayer", true}, {"isPlaying", true}, {"CurrentVideoSign", "A"s}};
  const std::tuple<Values, Values, std::string> cases[] = {
      {closed, {{"CurrentVideoSign", "B"s}}, " CurrentVideoSign=B IsOpenPlayer=yes isPlaying=yes"},
      {open, {{"CurrentVideoSign", "B"s}}, " CurrentVideoSign=B"},
      // Of another type is as good as removed.
      {closed, {{"CurrentVideoSign", 0L}}, " CurrentVideoSign= IsOpenPlayer=yes isPlaying=yes"},
      {closed, {{"IsOpenPlayer", true}}, " IsOpenPlayer=yes isPlaying=yes"},
      {closedPlaying, {{"IsOpenPlayer", true}, {"isPlaying", false}}, " IsOpenPlayer=yes isPlaying=yes"},
      {open, {{"IsOpenPlayer", false}, {"isPlaying", false}}, " IsOpenPlayer=no isPlaying=no"},
      {open,
       {{"MonitorArrange", 2L}, {"ScreenIndex", 1L}, {"PlayMode", 2L}},
       " MonitorArrange=2 ScreenIndex=1 PlayMode=2"},
      {open, {{"Volume", 0.25F}, {"Mute", true}, {"isPlaying", false}}, " Volume=0.25 Mute=yes isPlaying=no"},
      {open, {{"alreadyImportVideo", true}, {"autolaunch", false}}, " alreadyImportVideo=yes autolaunch=no"},
      // Not a number differs from itself, and is applied each second.
      {open, {{"Volume", std::nanf("")}}, " Volume=nan Volume=nan Volume=nan"}};
  for (const auto& [before, changed, expected] : cases) {
    suite.values = before;
    const Preferences preferences(suite, runLoop);
    for (const auto& [key, value] : changed) {
      suite.values[key] = value;
    }
    suite.writes.clear();
    suite.synchronisations = 0;
    runLoop.advance(999ms);
    EXPECT_EQ(suite.writes, "");
    runLoop.advance(2001ms);
    EXPECT_EQ(suite.writes, expected);
    const bool lazy = changed.contains("autolaunch");
    EXPECT_EQ(suite.synchronisations, lazy ? 0 : std::ranges::count(expected, ' ')) << expected;
  }
}

}  // namespace quilex::test
