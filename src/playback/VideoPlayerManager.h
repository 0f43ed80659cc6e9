#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/Disposable.h"
#include "library/LocalVideoDBManager.h"
#include "platform/Console.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/RandomSource.h"
#include "platform/RunLoop.h"
#include "platform/VideoPlayer.h"
#include "platform/WindowServer.h"
#include "playback/VideoInfoList.h"
#include "playback/VideoPlayerPlayModel.h"
#include "playback/VideoPlayerScreenType.h"
#include "settings/Preferences.h"

namespace quilex {

/// Plays the library's videos in the wallpaper windows, as the settings say. Main thread only.
class VideoPlayerManager {
 public:
  /// What the controller works with; all of it must outlive the controller.
  struct Services {
    Preferences& preferences;
    LocalVideoDBManager& library;
    WindowServer& windowServer;
    DistributedNotificationCenter& notificationCenter;
    RunLoop& runLoop;
    Console& console;
    VideoPlayerFactory makePlayer;
    UniformRandom random;
  };

  /// Reads the settings and registers the observations; builds no window and plays nothing yet.
  explicit VideoPlayerManager(Services services);
  ~VideoPlayerManager();
  VideoPlayerManager(const VideoPlayerManager&) = delete;
  VideoPlayerManager& operator=(const VideoPlayerManager&) = delete;

  /// The instance of this process.
  static VideoPlayerManager& shared();

  VideoPlayerScreenType screenType;
  /// The screen that `lonely` uses.
  std::int64_t screenIndex;
  /// Whether the wallpaper stands in front of the desktop icons; takes effect with the next `applyLevelAndOrder`.
  bool isHideDesktopIcon = false;

  // Windows (VideoPlayerManagerWindows.cpp)

  /// Makes the windows for the screen type, then opens or closes the player as the settings say.
  void buildWindows();
  /// Hides and drops all windows and builds them anew.
  void relayout();
  void applyLevelAndOrder();
  /// Puts the wallpaper in front of the desktop icons, or behind them.
  void setHideDesktopIcon(bool hide);
  /// To be called when monitors came, went or changed.
  void screensChanged();
  void activeSpaceDidChange();
  /// The raw value of "screenType" or "screenIndex"; nothing for any other key.
  std::optional<std::int64_t> valueForKey(std::string_view key) const;
  const std::vector<Screen>& currentScreenList() const { return coveredScreens; }
  const std::vector<std::unique_ptr<WallpaperWindow>>& windowList() const { return windows; }

  // Playlist (VideoPlayerManagerPlaylist.cpp)

  /// Refills the playlist from the library; loads and plays nothing.
  void updateVideoList();
  /// Writes the current video's sign to the settings if they name another.
  void syncSign();
  const VideoInfoList& videoList() const { return list; }
  VideoPlayerPlayModel playModel() const { return model; }

  // Playback (VideoPlayerManager.cpp)

  /// The player, made on first use and kept. Its item is the playlist's current video.
  VideoPlayer& player();
  /// Loads the playlist's current video and plays it.
  void playCurrent();
  void close();
  void setPlaying(bool playing);
  /// Plays what the play model lets follow.
  void playerItemDidReachEnd();
  void tapVideoPlayerViewAction();
  bool isMuted() { return player().isMuted(); }
  void setMuted(bool muted) { player().setMuted(muted); }
  float volume() { return player().volume(); }
  void setVolume(float amplitude) { player().setVolume(amplitude); }

 private:
  void observeSettings();

  void applyLevelAndOrder(WallpaperWindow& window) const;
  std::unique_ptr<WallpaperWindow> makeWindow(const Screen& screen, const Rect& viewFrame);
  void changeMonitorArrange(std::int64_t raw);
  void changeScreenIndex(std::int64_t index);

  void rebuildPlaylist();
  void advance();
  bool skipToPlayableNode();
  bool isAvailable(const std::string& sign);
  void followSign(const std::optional<std::string>& sign);
  void changePlayModel(std::int64_t raw);

  void loadPlayableNode();
  void searchAgain(std::chrono::milliseconds delay);
  void itemStatusChanged(PlayerItemStatus status);

  Services services;
  VideoPlayerPlayModel model;
  std::unique_ptr<VideoPlayer> sharedPlayer;
  std::vector<Screen> coveredScreens;
  std::vector<std::unique_ptr<WallpaperWindow>> windows;
  VideoInfoList list;
  std::mutex videoListLocker;
  bool awaitsPlayableNode = false;
  /// Whether the library answered when the playlist was last filled.
  bool listWasRead = true;
  std::size_t failuresInARow = 0;
  std::optional<Disposable> search;
  std::optional<Disposable> reread;
  std::optional<Disposable> statusObservation;
  std::optional<Disposable> itemEndObservation;
  std::vector<Disposable> registrations;
  std::vector<Disposable> observerDisposables;
};

}  // namespace quilex
