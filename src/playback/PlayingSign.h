#pragma once

#include <optional>
#include <string>

#include "base/Disposable.h"
#include "playback/LoadingMark.h"
#include "playback/Playback.h"
#include "playback/PlaybackServices.h"
#include "playback/Playlist.h"
#include "playback/RetryDelay.h"

namespace quilex {

/// Keeps the sign in the settings and the playlist's current video in step, in both directions. Main thread.
class PlayingSign {
 public:
  PlayingSign(const PlaybackServices& services, LoadingMark& mark, Playlist& playlist, Playback& playback)
      : services_(services), mark_(mark), playlist_(playlist), playback_(playback) {}

  /// Plays the video that the settings name now, once its file is known to exist; a later sign replaces it until then.
  /// A video without a file is deleted from the library. A sign that is missing is a fault that stops the process.
  void follow(const std::optional<std::string>& sign);
  /// Whether a sign from the settings is still being followed: it is not known yet if its video can be played.
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

  const PlaybackServices& services_;
  LoadingMark& mark_;
  Playlist& playlist_;
  Playback& playback_;
  std::optional<Disposable> following_;
  RetryDelay retryDelay_;
  bool syncsAfterFollowing_ = false;
};

}  // namespace quilex
