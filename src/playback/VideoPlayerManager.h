#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/Disposable.h"
#include "library/LocalVideoDBManager.h"
#include "platform/Console.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/FileFinder.h"
#include "platform/RandomSource.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"
#include "platform/StatusReport.h"
#include "platform/VideoPlayer.h"
#include "platform/WindowServer.h"
#include "playback/LoadingMark.h"
#include "playback/PlayableSearch.h"
#include "playback/VideoInfoList.h"
#include "playback/VideoPlayerPlayModel.h"
#include "playback/VideoPlayerScreenType.h"
#include "settings/Preferences.h"

namespace quilex {

/// Plays the library's videos in the wallpaper windows, as the settings say. Main thread only.
///
/// Whether a video's file exists is found out beside the main thread. Until that is known, what was shown stays, and a
/// later wish takes the place of the one that waits.
class VideoPlayerManager {
 public:
  /// What the controller works with; all of it must outlive the controller.
  struct Services {
    Preferences& preferences;
    SettingsSuite& standardDefaults;
    LocalVideoDBManager& library;
    FileFinder& fileFinder;
    WindowServer& windowServer;
    DistributedNotificationCenter& notificationCenter;
    RunLoop& runLoop;
    Console& console;
    VideoPlayerFactory makePlayer;
    UniformRandom random;
    StatusReport& report;
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
  const std::vector<Screen>& currentScreenList() const { return coveredScreens_; }
  const std::vector<std::unique_ptr<WallpaperWindow>>& windowList() const { return windows_; }

  // Playlist (VideoPlayerManagerPlaylist.cpp)

  /// Refills the playlist from the library; loads and plays nothing, unless a video was waited for.
  void updateVideoList();
  /// Writes the current video's sign to the settings if they name another; where it is not known yet which video will
  /// be current, as soon as it is.
  void syncSign();
  const VideoInfoList& videoList() const { return list_; }
  VideoPlayerPlayModel playModel() const { return model_; }

  // Playback (VideoPlayerManager.cpp)

  /// The player, made on first use and kept. Its item is the playlist's current video.
  VideoPlayer& player();
  /// Loads the playlist's current video and plays it.
  void playCurrent();
  void close();
  /// Plays or pauses; a closed player stays paused.
  void setPlaying(bool playing);
  /// Plays what the play model lets follow.
  void playerItemDidReachEnd();
  void tapVideoPlayerViewAction();
  /// To be called before the agent ends in good order.
  void willTerminate() { mark_.clear(); }
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
  void libraryChanged();
  void advance();
  void followSign(const std::optional<std::string>& sign);
  void testAvailability(const std::string& sign);
  void testAvailabilityLater(const std::string& sign);
  void playFollowed(const std::string& sign);
  void deleteUnavailable(const std::string& sign);
  void endFollowing();
  void changePlayModel(std::int64_t raw);

  void open();
  void loadPlayableNode();
  void loadPlayableNodeLater();
  void searchDone(const std::optional<std::filesystem::path>& file);
  void load(const std::filesystem::path& file);
  void itemStatusChanged(PlayerItemStatus status);
  void setVideoState(const char* state);
  void updateRepeating();

  /// The growing pauses between attempts to read a library that does not answer.
  class RetryDelay {
   public:
    std::chrono::milliseconds next();
    void reset() { delay_ = kFirst; }

   private:
    static constexpr std::chrono::milliseconds kFirst{250};
    static constexpr std::chrono::milliseconds kLongest{10'000};
    std::chrono::milliseconds delay_ = kFirst;
  };
  /// What is to be done about the settings' sign when a search has ended.
  enum class Sync { no, ifFound, yes };

  Services services_;
  VideoPlayerPlayModel model_;
  LoadingMark mark_;
  std::unique_ptr<VideoPlayer> sharedPlayer_;
  std::vector<Screen> coveredScreens_;
  std::vector<std::unique_ptr<WallpaperWindow>> windows_;
  VideoInfoList list_;
  std::mutex videoListLocker_;
  RetryDelay rereadDelay_;
  std::optional<Disposable> reread_;
  std::optional<Disposable> rebuildSoon_;

  PlayableSearch search_;
  std::optional<Disposable> nextSearch_;

  /// Of the video that the settings were changed to, while it is not known whether it can be played.
  std::optional<Disposable> following_;
  RetryDelay followDelay_;

  /// The player's item.
  std::filesystem::path itemFile_;
  std::string itemSign_;
  /// The videos that have failed since one was last played to its end.
  std::set<std::string> failedSigns_;

  Sync syncWhenSearched_ = Sync::no;
  /// Whether the player is to play what the search that is under way finds.
  bool playsWhenSearched_ = false;
  bool syncsAfterFollowing_ = false;
  /// Whether the last search found nothing.
  bool awaitsPlayableNode_ = false;
  /// Whether the library answered when the playlist was last filled.
  bool listWasRead_ = true;
  bool itemIsReady_ = false;
  std::optional<bool> repeats_;

  std::optional<Disposable> statusObservation_;
  std::optional<Disposable> itemEndObservation_;
  std::vector<Disposable> registrations_;
  std::vector<Disposable> observerDisposables_;
};

}  // namespace quilex
