#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "base/ObservableProperty.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"
#include "settings/SettingsKeys.h"

namespace quilex {

/// The user's settings: an observable mirror of the shared suite. Setting a property writes the suite, then notifies;
/// once a second the suite is read again, and what another process changed is taken over and notified, but not written
/// back: that could undo what was stored since.
class Preferences {
 public:
  struct Key {
    static constexpr const char* currentVideoSign = settings::kCurrentVideoSign;
    static constexpr const char* alreadyImportVideo = settings::kAlreadyImportVideo;
  };

  /// Writes the defaults that are missing from the suite, reads every property and starts the reload. Both arguments
  /// must outlive the instance.
  Preferences(SettingsSuite& settingsSuite, RunLoop& runLoop);
  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;

  /// The instance of this process.
  static Preferences& shared();

 private:
  SettingsSuite& suite_;

 public:
  /// Raw value of VideoPlayerScreenType.
  ObservableProperty<std::int64_t> monitorArrange;
  /// Index into the current list of screens.
  ObservableProperty<std::int64_t> screenIndex;
  /// Raw value of VideoPlayerPlayModel.
  ObservableProperty<std::int64_t> playModel;
  /// Sign of the video to play.
  ObservableProperty<std::optional<std::string>> playingVideoSign;
  /// Linear amplitude, 0 to 1.
  ObservableProperty<float> volume;
  ObservableProperty<bool> mute;
  ObservableProperty<bool> alreadyImportVideo;
  ObservableProperty<bool> isOpenPlayer;
  ObservableProperty<bool> isPlaying;
  ObservableProperty<bool> autolaunch;

  /// Applies to the properties what differs in the suite; run by the timer.
  void updateUserDefaultFromDisk();

  /// Whether another process has chosen a video since the settings were last read. The next reading follows it.
  bool isAnotherVideoChosen() const { return suite_.string(Key::currentVideoSign) != playingVideoSign.get(); }

  /// Whether the library was emptied on purpose. Then there is no video that the settings could name.
  bool libraryWasEmptied() const { return suite_.boolean(settings::kLibraryWasEmptied); }
  void setLibraryWasEmptied();
  /// Names no video any more, without notifying: there is none that the observers could turn to.
  void forgetPlayingVideoSign();

 private:
  Disposable reload_;
};

}  // namespace quilex
