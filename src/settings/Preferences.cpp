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
    : suite(settingsSuite),
      monitorArrange(integerStore(suite, kMonitorArrange)),
      screenIndex(integerStore(suite, kScreenIndex)),
      playModel(integerStore(suite, kPlayMode)),
      playingVideoSign(stringStore(suite, Key::currentVideoSign)),
      volume(realStore(suite, kVolume)),
      mute(booleanStore(suite, kMute)),
      alreadyImportVideo(lazyBooleanStore(suite, Key::alreadyImportVideo)),
      isOpenPlayer(booleanStore(suite, kIsOpenPlayer)),
      isPlaying(booleanStore(suite, kIsPlaying)),
      autolaunch(lazyBooleanStore(suite, kAutolaunch)),
      reload(runLoop.every(std::chrono::seconds(1), [this] { updateUserDefaultFromDisk(); })) {
  registerDefaults(suite);
  monitorArrange.assign(suite.integer(kMonitorArrange));
  screenIndex.assign(suite.integer(kScreenIndex));
  playModel.assign(suite.integer(kPlayMode));
  playingVideoSign.assign(suite.string(Key::currentVideoSign));
  volume.assign(suite.real(kVolume));
  mute.assign(suite.boolean(kMute));
  alreadyImportVideo.assign(suite.boolean(Key::alreadyImportVideo));
  isOpenPlayer.assign(suite.boolean(kIsOpenPlayer));
  isPlaying.assign(suite.boolean(kIsPlaying));
  autolaunch.assign(suite.boolean(kAutolaunch));
}

void Preferences::updateUserDefaultFromDisk() {
  applyIfDifferent(monitorArrange, suite.integer(kMonitorArrange));
  applyIfDifferent(screenIndex, suite.integer(kScreenIndex));
  applyIfDifferent(playModel, suite.integer(kPlayMode));
  if (const auto stored = suite.string(Key::currentVideoSign); stored != playingVideoSign.get()) {
    // A change of the video made by another process always opens and starts the wallpaper.
    if (stored) {
      playingVideoSign.apply(stored);
    } else {
      playingVideoSign.set("");
    }
    if (!isOpenPlayer.get()) {
      turnOn(isOpenPlayer, suite.boolean(kIsOpenPlayer));
    }
    if (!isPlaying.get()) {
      turnOn(isPlaying, suite.boolean(kIsPlaying));
    }
  }
  applyIfDifferent(volume, suite.real(kVolume));
  applyIfDifferent(mute, suite.boolean(kMute));
  applyIfDifferent(alreadyImportVideo, suite.boolean(Key::alreadyImportVideo));
  if (const bool stored = suite.boolean(kIsOpenPlayer); stored != isOpenPlayer.get()) {
    isOpenPlayer.apply(stored);
    if (isOpenPlayer.get()) {
      turnOn(isPlaying, suite.boolean(kIsPlaying));
    }
  }
  applyIfDifferent(isPlaying, suite.boolean(kIsPlaying));
  applyIfDifferent(autolaunch, suite.boolean(kAutolaunch));
}

void Preferences::setLibraryWasEmptied() {
  suite.setBoolean(kLibraryWasEmptied, true);
  suite.synchronize();
}

void Preferences::forgetPlayingVideoSign() {
  playingVideoSign.assign(std::nullopt);
  suite.remove(Key::currentVideoSign);
  suite.synchronize();
}

}  // namespace quilex
