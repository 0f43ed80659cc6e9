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

auto integerStore(SettingsSuite& suite, const char* key) {
  return [&suite, key](std::int64_t value) {
    suite.setInteger(key, value);
    suite.synchronize();
  };
}

auto booleanStore(SettingsSuite& suite, const char* key) {
  return [&suite, key](bool value) {
    suite.setBoolean(key, value);
    suite.synchronize();
  };
}

// For settings that may reach the other processes a little later.
auto lazyBooleanStore(SettingsSuite& suite, const char* key) {
  return [&suite, key](bool value) { suite.setBoolean(key, value); };
}

auto realStore(SettingsSuite& suite, const char* key) {
  return [&suite, key](float value) {
    suite.setReal(key, value);
    suite.synchronize();
  };
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

template <typename Value>
void applyIfDifferent(ObservableProperty<Value>& property, const Value& stored) {
  // A NaN on either side counts as different, as it does for the operator.
  if (stored != property.get()) {
    property.apply(stored);
  }
}

// Writes nothing that the suite holds already, as another process may be about to change it.
void turnOn(ObservableProperty<bool>& flag, bool isStored) {
  if (isStored) {
    flag.apply(true);
  } else {
    flag.set(true);
  }
}

}  // namespace

Preferences::Preferences(SettingsSuite& settingsSuite, RunLoop& runLoop)
    : suite_(settingsSuite),
      monitorArrange(integerStore(suite_, kMonitorArrange)),
      screenIndex(integerStore(suite_, kScreenIndex)),
      playModel(integerStore(suite_, kPlayMode)),
      playingVideoSign(stringStore(suite_, Key::currentVideoSign)),
      volume(realStore(suite_, kVolume)),
      mute(booleanStore(suite_, kMute)),
      alreadyImportVideo(lazyBooleanStore(suite_, Key::alreadyImportVideo)),
      isOpenPlayer(booleanStore(suite_, kIsOpenPlayer)),
      isPlaying(booleanStore(suite_, kIsPlaying)),
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
}

void Preferences::updateUserDefaultFromDisk() {
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
