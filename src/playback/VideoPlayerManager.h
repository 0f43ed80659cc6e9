#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/Disposable.h"
#include "playback/LoadingMark.h"
#include "playback/Playback.h"
#include "playback/PlaybackServices.h"
#include "playback/PlayingSign.h"
#include "playback/Playlist.h"
#include "playback/WallpaperWindows.h"

namespace quilex {

/// Plays the library's videos in the wallpaper windows, as the settings say. The face of this room: it observes the
/// settings and the desktop, and passes what happens to the room's parts. Main thread only.
class VideoPlayerManager {
 public:
  using Services = PlaybackServices;

  /// Reads the settings and registers the observations; makes no window and plays nothing yet.
  explicit VideoPlayerManager(Services services);
  ~VideoPlayerManager();
  VideoPlayerManager(const VideoPlayerManager&) = delete;
  VideoPlayerManager& operator=(const VideoPlayerManager&) = delete;

  /// The instance of this process.
  static VideoPlayerManager& shared();

  // Windows

  /// Makes the windows for the screen type, then opens or closes the player as the settings say.
  void buildWindows();
  /// Hides and drops all windows, then builds them again.
  void relayout();
  void applyLevelAndOrder() { windows_.applyLevelAndOrder(); }
  /// Puts the wallpaper in front of the desktop icons, or behind them.
  void setHideDesktopIcon(bool hide);
  /// To be called when monitors came, went or changed.
  void screensChanged();
  void activeSpaceDidChange() { setHideDesktopIcon(isHideDesktopIcon); }
  /// The raw value of "screenType" or "screenIndex"; nothing for any other key. For callers that read by name.
  std::optional<std::int64_t> valueForKey(std::string_view key) const;
  const std::vector<Screen>& currentScreenList() const { return windows_.screens(); }
  const std::vector<std::unique_ptr<WallpaperWindow>>& windowList() const { return windows_.windows(); }

  // Playlist

  /// Fills the playlist from the library again. What plays is not interrupted; only a search for a video that can be
  /// loaded is started again.
  void updateVideoList();
  /// Writes the current video's sign to the settings if they name another; if it is not known yet which video will be
  /// current, as soon as it is.
  void syncSign() { sign_.sync(); }
  const VideoInfoList& videoList() const { return playlist_.list(); }
  VideoPlayerPlayModel playModel() const { return playlist_.model(); }

  // Playback

  /// The player, made on first use and kept.
  VideoPlayer& player() { return playback_.player(); }
  /// Loads the playlist's current video from its start and plays it.
  void playCurrent() { playback_.playCurrent(); }
  void close() { playback_.close(); }
  /// Plays or pauses; a closed player stays paused.
  void setPlaying(bool playing) { playback_.setPlaying(playing); }
  /// While true, the player stands still whatever the settings say.
  void setHeld(bool isHeld) { playback_.setHeld(isHeld); }
  /// Plays the video that comes next by the play model.
  void playerItemDidReachEnd() { playback_.playerItemDidReachEnd(); }
  void tapVideoPlayerViewAction() { windows_.tapVideoPlayerViewAction(); }
  /// To be called before the agent ends in order.
  void willTerminate() { mark_.clear(); }
  bool isMuted() { return player().isMuted(); }
  void setMuted(bool muted) { player().setMuted(muted); }
  float volume() { return player().volume(); }
  void setVolume(float amplitude) { player().setVolume(amplitude); }

 private:
  void observeSettings();
  void libraryChanged();
  void changePlayModel(std::int64_t raw);
  void changeScreenIndex(std::int64_t index);
  void changeMonitorArrange(std::int64_t raw);
  void open();
  void setIsPlaying();

  Services services_;
  LoadingMark mark_;
  WallpaperWindows windows_;
  Playlist playlist_;
  Playback playback_;
  PlayingSign sign_;
  std::optional<Disposable> rebuildSoon_;
  std::vector<Disposable> registrations_;
  std::vector<Disposable> observerDisposables_;

 public:
  // The menu reads and changes these; what they mean and when they take effect is said in WallpaperWindows.
  VideoPlayerScreenType& screenType = windows_.screenType;
  std::int64_t& screenIndex = windows_.screenIndex;
  bool& isHideDesktopIcon = windows_.isHideDesktopIcon;
};

}  // namespace quilex
