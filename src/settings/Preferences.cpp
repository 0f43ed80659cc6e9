#include "settings/Preferences.h"

#include <chrono>

namespace quilex {

namespace {

using namespace settings;

void registerDefaults(SettingsSuite& suite) {
  const auto missing = [&](const char* key) { return !suite.contains(key); };
  if (missing(kAutolaunch)) {
    suite.setBoolean(kAutolaunch, kDefaultAutolaunch);
  }
  if (missing(kVolume)) {
    suite.setReal(kVolume, kDefaultVolume);
  }
  if (missing(kMute)) {
    suite.setBoolean(kMute, false);
  }
  if (missing(kIsOpenPlayer)) {
    suite.setBoolean(kIsOpenPlayer, kDefaultIsOpenPlayer);
  }
  if (missing(kIsPlaying)) {
    suite.setBoolean(kIsPlaying, kDefaultIsPlaying);
  }
  suite.synchronize();
}

// How a property is written to the suite, by the suite's setter for its type.
template <auto kSetter>
auto store(SettingsSuite& suite, const char* key) {
  return [&suite, key](const auto& value) {
    (suite.*kSetter)(key, value);
    suite.synchronize();
  };
}

// For settings that may reach the other processes a little later.
auto lazyBooleanStore(SettingsSuite& suite, const char* key) {
  return [&suite, key](bool value) { suite.setBoolean(key, value); };
}

auto stringStore(SettingsSuite& suite, const char* key) {
  return [&suite, key](const std::optional<std::string>& value) {
    if (value) {
      suite.setString(key, *value);
    } else {
      suite.remove(key);
    }
    suite.synchronize();
  };
}

PauseSettings readPauseRules(const SettingsSuite& suite) {
  return {suite.boolean(kPauseOnBattery),     suite.integer(kPauseBelowCharge),
          suite.boolean(kPauseInPowerSaver),  suite.boolean(kPauseWhenIdle),
          suite.boolean(kPauseForFullScreen), suite.boolean(kPauseForMaximized),
          suite.boolean(kPauseForGames),      suite.string(kPauseForPrograms).value_or("")};
}

template <typename Value>
void applyIfDifferent(ObservableProperty<Value>& property, const Value& stored) {
  // A NaN differs from every value.
  if (stored != property.get()) {
    property.apply(stored);
  }
}

// Does not write what the suite holds already: another process may be changing it.
void turnOn(ObservableProperty<bool>& flag, bool isStored) {
  if (isStored) {
    flag.apply(true);
  } else {
    flag.set(true);
  }
}

}  // namespace

Preferences::Preferences(SettingsSuite& suite, RunLoop& runLoop)
    : suite_(suite),
      monitorArrange(store<&SettingsSuite::setInteger>(suite_, kMonitorArrange)),
      screenIndex(store<&SettingsSuite::setInteger>(suite_, kScreenIndex)),
      playModel(store<&SettingsSuite::setInteger>(suite_, kPlayMode)),
      playingVideoSign(stringStore(suite_, Key::currentVideoSign)),
      volume(store<&SettingsSuite::setReal>(suite_, kVolume)),
      mute(store<&SettingsSuite::setBoolean>(suite_, kMute)),
      alreadyImportVideo(lazyBooleanStore(suite_, Key::alreadyImportVideo)),
      isOpenPlayer(store<&SettingsSuite::setBoolean>(suite_, kIsOpenPlayer)),
      isPlaying(store<&SettingsSuite::setBoolean>(suite_, kIsPlaying)),
      autolaunch(lazyBooleanStore(suite_, kAutolaunch)),
      reload_(runLoop.every(std::chrono::seconds(1), [this] { updateUserDefaultFromDisk(); })) {
  registerDefaults(suite_);
  monitorArrange.assign(suite_.integer(kMonitorArrange));
  screenIndex.assign(suite_.integer(kScreenIndex));
  playModel.assign(suite_.integer(kPlayMode));
  playingVideoSign.assign(suite_.string(Key::currentVideoSign));
  volume.assign(suite_.real(kVolume));
  mute.assign(suite_.boolean(kMute));
  alreadyImportVideo.assign(suite_.boolean(Key::alreadyImportVideo));
  isOpenPlayer.assign(suite_.boolean(kIsOpenPlayer));
  isPlaying.assign(suite_.boolean(kIsPlaying));
  autolaunch.assign(suite_.boolean(kAutolaunch));
  pauseRules.assign(readPauseRules(suite_));
}

void Preferences::updateUserDefaultFromDisk() {
  mainThread_.check();
  applyIfDifferent(monitorArrange, suite_.integer(kMonitorArrange));
  applyIfDifferent(screenIndex, suite_.integer(kScreenIndex));
  applyIfDifferent(playModel, suite_.integer(kPlayMode));
  if (const auto stored = suite_.string(Key::currentVideoSign); stored != playingVideoSign.get()) {
    // A change of the video made by another process always opens and starts the wallpaper.
    if (stored) {
      playingVideoSign.apply(stored);
    } else {
      playingVideoSign.set("");
    }
    if (!isOpenPlayer.get()) {
      turnOn(isOpenPlayer, suite_.boolean(kIsOpenPlayer));
    }
    if (!isPlaying.get()) {
      turnOn(isPlaying, suite_.boolean(kIsPlaying));
    }
  }
  applyIfDifferent(volume, suite_.real(kVolume));
  applyIfDifferent(mute, suite_.boolean(kMute));
  applyIfDifferent(alreadyImportVideo, suite_.boolean(Key::alreadyImportVideo));
  if (const bool stored = suite_.boolean(kIsOpenPlayer); stored != isOpenPlayer.get()) {
    isOpenPlayer.apply(stored);
    if (isOpenPlayer.get()) {
      turnOn(isPlaying, suite_.boolean(kIsPlaying));
    }
  }
  applyIfDifferent(isPlaying, suite_.boolean(kIsPlaying));
  applyIfDifferent(autolaunch, suite_.boolean(kAutolaunch));
  applyIfDifferent(pauseRules, readPauseRules(suite_));
}

void Preferences::setLibraryWasEmptied() {
  suite_.setBoolean(kLibraryWasEmptied, true);
  suite_.synchronize();
}

void Preferences::forgetPlayingVideoSign() {
  playingVideoSign.assign(std::nullopt);
  suite_.remove(Key::currentVideoSign);
  suite_.synchronize();
}

}  // namespace quilex
