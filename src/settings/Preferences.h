#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "base/MainThread.h"
#include "base/ObservableProperty.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"
#include "settings/PauseSettings.h"
#include "settings/SettingsKeys.h"

namespace quilex {

/// The user's settings: an observable mirror of the shared suite. Setting a property writes the suite, then notifies.
/// Once a second the suite is read again: what another process changed is applied and notified, but not written back,
/// which could undo a later change. Main thread.
class Preferences {
 public:
  struct Key {
    static constexpr const char* currentVideoSign = settings::kCurrentVideoSign;
    static constexpr const char* alreadyImportVideo = settings::kAlreadyImportVideo;
  };

  /// Writes the defaults that are missing from the suite, reads every property and starts the reload. Both must outlive
  /// the instance.
  Preferences(SettingsSuite& suite, RunLoop& runLoop);
  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;

  /// The instance of this process.
  static Preferences& shared();

 private:
  [[no_unique_address]] MainThread mainThread_;
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
  /// Kept for the main application, which says with it that the library has videos.
  ObservableProperty<bool> alreadyImportVideo;
  ObservableProperty<bool> isOpenPlayer;
  ObservableProperty<bool> isPlaying;
  ObservableProperty<bool> autolaunch;
  /// Only other programs change these.
  ObservableProperty<PauseSettings> pauseRules;

  /// Applies to the properties what differs in the suite. Called by a timer.
  void updateUserDefaultFromDisk();

  /// Whether another process has chosen a video since the suite was last read; the next reload applies that.
  bool isAnotherVideoChosen() const { return suite_.string(Key::currentVideoSign) != playingVideoSign.get(); }

  /// Whether a person has emptied the library, after which the settings need not name a video.
  bool libraryWasEmptied() const { return suite_.boolean(settings::kLibraryWasEmptied); }
  void setLibraryWasEmptied();
  /// Removes the sign without notifying: there is no video that observers could turn to.
  void forgetPlayingVideoSign();

 private:
  Disposable reload_;
};

}  // namespace quilex
