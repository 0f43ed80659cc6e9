#pragma once

#include <optional>
#include <string>

#include "base/Disposable.h"
#include "library/LocalVideoDBManager.h"
#include "platform/Console.h"
#include "platform/FileFinder.h"
#include "platform/RunLoop.h"
#include "playback/LoadingMark.h"
#include "playback/Playback.h"
#include "playback/Playlist.h"
#include "playback/RetryDelay.h"
#include "settings/Preferences.h"

namespace quilex {

/// Keeps the sign in the settings and the playlist's current video together, in both directions. Main thread.
class PlayingSign {
 public:
  struct Services {
    Preferences& preferences;
    LocalVideoDBManager& library;
    FileFinder& fileFinder;
    RunLoop& runLoop;
    Console& console;
    LoadingMark& mark;
    Playlist& playlist;
    Playback& playback;
  };

  explicit PlayingSign(Services services);

  /// Plays the video that the settings name now, once its file is known to exist; a later sign replaces it until then.
  /// A video without a file is deleted from the library. A sign that is missing is a fault that stops the process.
  void follow(const std::optional<std::string>& sign);
  /// Whether it is not known yet if the video can be played.
  bool isFollowing() const { return following_.has_value(); }

  /// Writes the current video's sign to the settings if they name another. During a search, or while a sign is
  /// followed, the write waits for its end.
  void sync();

 private:
  void testAvailability(const std::string& sign);
  void testAvailabilityLater(const std::string& sign);
  void play(const std::string& sign);
  void deleteUnavailable(const std::string& sign);
  void endFollowing();

  Services services_;
  std::optional<Disposable> following_;
  RetryDelay retryDelay_;
  bool syncsAfterFollowing_ = false;
};

}  // namespace quilex
