#include <gtest/gtest.h>

#include <cmath>

#include "settings/Preferences.h"
#include "support/Fakes.h"

namespace quilex {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Values = decltype(test::FakeSettingsSuite::values);

class PreferencesTest : public testing::Test {
 protected:
  void start(const Values& stored) {
    tokens.clear();
    suite.values = stored;
    preferences.emplace(suite, runLoop);
    suite.writes.clear();
    suite.synchronisations = 0;
    observe("MonitorArrange", preferences->monitorArrange);
    observe("ScreenIndex", preferences->screenIndex);
    observe("PlayMode", preferences->playModel);
    observe("Volume", preferences->volume);
    observe("Mute", preferences->mute);
    observe("alreadyImportVideo", preferences->alreadyImportVideo);
    observe("IsOpenPlayer", preferences->isOpenPlayer);
    observe("isPlaying", preferences->isPlaying);
    observe("autolaunch", preferences->autolaunch);
    tokens.push_back(preferences->playingVideoSign.observe([this](const auto& sign) { note("sign", *sign); }));
  }

  template <typename Value>
  void observe(const char* key, ObservableProperty<Value>& property) {
    tokens.push_back(property.observe([this, key](Value value) {
      EXPECT_EQ(suite.writes.back(), key) << "written before the observers are told";
      note(key, testing::PrintToString(value));
    }));
  }

  void note(const std::string& what, const std::string& value) { changes += " " + what + "=" + value; }

  test::FakeRunLoop runLoop;
  test::FakeSettingsSuite suite;
  std::optional<Preferences> preferences;
  std::vector<Disposable> tokens;
  std::string changes;
};

TEST_F(PreferencesTest, AFirstRunWritesTheDefaultsAndNoMore) {
  preferences.emplace(suite, runLoop);
  const Values defaults{
      {"autolaunch", true}, {"Volume", 0.5F}, {"Mute", false}, {"IsOpenPlayer", true}, {"isPlaying", true}};
  EXPECT_EQ(suite.values, defaults);
  EXPECT_EQ(suite.synchronisations, 1);
  EXPECT_EQ(preferences->volume.get(), 0.5F);
  EXPECT_EQ(preferences->playingVideoSign.get(), std::nullopt);
}

TEST_F(PreferencesTest, WhatIsStoredStaysEvenIfItIsZeroOrOfAnotherType) {
  const Values stored{{"Volume", 0.0F},          {"autolaunch", "yes"s}, {"Mute", true},
                      {"IsOpenPlayer", false},   {"isPlaying", 1L},      {"PlayMode", "2"s},
                      {"CurrentVideoSign", true}};
  start(stored);
  EXPECT_EQ(suite.values, stored);
  EXPECT_EQ(preferences->volume.get(), 0.0F);
  EXPECT_TRUE(preferences->mute.get());
  EXPECT_FALSE(preferences->isPlaying.get());
  EXPECT_EQ(preferences->playModel.get(), 0);
  EXPECT_EQ(preferences->playingVideoSign.get(), std::nullopt);
}

TEST_F(PreferencesTest, OnceASecondWhatAnotherProcessChangedIsAppliedInOrder) {
  const Values closed{{"IsOpenPlayer", false}, {"isPlaying", false}, {"CurrentVideoSign", "A"s}};
  const Values closedPlaying{{"IsOpenPlayer", false}, {"isPlaying", true}};
  const Values open{{"IsOpenPlayer", true}, {"isPlaying", true}, {"CurrentVideoSign", "A"s}};
  const std::tuple<Values, Values, std::string> cases[] = {
      {closed, {{"CurrentVideoSign", "B"s}}, " sign=B IsOpenPlayer=true isPlaying=true"},
      {open, {{"CurrentVideoSign", "B"s}}, " sign=B"},
      // Of another type is as good as removed; agreeing afterwards takes an empty text written back.
      {closed, {{"CurrentVideoSign", 0L}}, " sign= IsOpenPlayer=true isPlaying=true"},
      {closed, {{"IsOpenPlayer", true}}, " IsOpenPlayer=true isPlaying=true"},
      {closedPlaying, {{"IsOpenPlayer", true}, {"isPlaying", false}}, " IsOpenPlayer=true isPlaying=true"},
      {open, {{"IsOpenPlayer", false}, {"isPlaying", false}}, " IsOpenPlayer=false isPlaying=false"},
      {open,
       {{"MonitorArrange", 2L},
        {"ScreenIndex", 1L},
        {"PlayMode", 2L},
        {"Volume", 0.25F},
        {"Mute", true},
        {"alreadyImportVideo", true},
        {"isPlaying", false},
        {"autolaunch", false}},
       " MonitorArrange=2 ScreenIndex=1 PlayMode=2 Volume=0.25 Mute=true alreadyImportVideo=true isPlaying=false "
       "autolaunch=false"}};
  for (const auto& [before, changed, expected] : cases) {
    start(before);
    for (const auto& [key, value] : changed) {
      suite.values[key] = value;
    }
    changes.clear();
    runLoop.advance(999ms);
    EXPECT_EQ(changes, "");
    runLoop.advance(4s);
    EXPECT_EQ(changes, expected) << "once, after which the suite and the properties agree";
  }
  EXPECT_EQ(suite.synchronisations, 6) << "for all but alreadyImportVideo and autolaunch";
}

TEST_F(PreferencesTest, AVolumeThatIsNoNumberDiffersFromItself) {
  start({});
  suite.values["Volume"] = std::nanf("");
  runLoop.advance(2s);
  EXPECT_EQ(changes, " Volume=nan Volume=nan");
}

}  // namespace
}  // namespace quilex
