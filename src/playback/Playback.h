#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "base/Disposable.h"
#include "base/MainThread.h"
#include "playback/LoadingMark.h"
#include "playback/PlaybackServices.h"
#include "playback/Playlist.h"
#include "playback/WallpaperWindows.h"

namespace quilex {

/// Loads the playlist's current video into the player, and the next one when it has ended or cannot be played. Main
/// thread.
///
/// Whether a video's file exists is found out on other threads. Until that is known, the player keeps its item.
class Playback {
 public:
  /// `syncSign` is called when another video may have become current.
  Playback(const PlaybackServices& services, LoadingMark& mark, Playlist& playlist, WallpaperWindows& windows,
           std::function<void()> syncSign);

  /// The player, made on first use and kept; the first use also fills the playlist.
  VideoPlayer& player();

  /// Loads the current video from its start and plays it.
  void playCurrent();
  /// Loads the current video; the player stays playing or paused.
  void loadCurrent();
  /// Shows the windows and plays the item that is loaded.
  void resume();
  /// Pauses and hides the windows.
  void close();
  /// Plays or pauses; a closed player stays paused.
  void setPlaying(bool playing);
  /// Holds the player or lets it go on, and stops looking for videos meanwhile.
  void setHeld(bool isHeld);
  /// Plays the video that comes next by the play model.
  void playerItemDidReachEnd();

  /// Makes a search that is under way call `syncSign` at its end.
  void syncWhenSearched() { syncWhenSearched_ = Sync::yes; }
  /// To be called after a rebuild of the playlist, which cancels a search. Starts that again if there was one, and
  /// repeats a search that found nothing.
  void searchAgain(bool wasSearching);
  /// Has the player repeat the video if it is followed by itself. To be called when the playlist or its model changed.
  void updateRepeating();

 private:
  /// Whether `syncSign` is called when a search has ended.
  enum class Sync { no, ifFound, yes };

  void search();
  void searchLater();
  void searchDone(const std::optional<std::filesystem::path>& file);
  void load(const std::filesystem::path& file);
  void itemStatusChanged(PlayerItemStatus status);
  void setVideoState(const char* state);
  void updateMark();

  [[no_unique_address]] MainThread mainThread_;
  const PlaybackServices& services_;
  LoadingMark& mark_;
  Playlist& playlist_;
  WallpaperWindows& windows_;
  std::function<void()> syncSign_;
  std::unique_ptr<VideoPlayer> player_;
  std::optional<bool> repeats_;
  bool isHeld_ = false;

  /// The player's item: its file and sign, whether it is being loaded, and whether its first frame has been decoded.
  std::filesystem::path itemFile_;
  std::string itemSign_;
  bool isLoading_ = false;
  bool itemIsReady_ = false;
  /// The videos that have failed. Searches pass over them until a video plays to its end, none is left to try, or one
  /// is loaded on request.
  std::set<std::string> failedSigns_;

  Sync syncWhenSearched_ = Sync::no;
  /// Whether the player plays when the search has ended.
  bool playsWhenSearched_ = false;
  bool lastSearchFailed_ = false;
  std::optional<Disposable> nextSearch_;

  std::optional<Disposable> statusObservation_;
  std::optional<Disposable> itemEndObservation_;
};

}  // namespace quilex
