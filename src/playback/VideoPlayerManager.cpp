#include "playback/VideoPlayerManager.h"

#include <chrono>
#include <utility>

namespace quilex {

VideoPlayerManager::VideoPlayerManager(Services services)
    : services_(std::move(services)),
      mark_(services_.standardDefaults, services_.console),
      windows_(services_, [this]() -> VideoPlayer& { return player(); }),
      playlist_(
          services_, [this] { playback_.updateRepeating(); }, [this] { updateVideoList(); }),
      playback_(services_, mark_, playlist_, windows_, [this] { syncSign(); }),
      sign_(services_, mark_, playlist_, playback_) {
  registrations_.push_back(services_.windowServer.observeActiveSpace([this] { activeSpaceDidChange(); }));
  registrations_.push_back(services_.notificationCenter.observe("UpdateVideoList", [this] { libraryChanged(); }));
  observeSettings();
}

VideoPlayerManager::~VideoPlayerManager() {
  // They show the player, which goes first otherwise.
  windows_.clear();
}

void VideoPlayerManager::observeSettings() {
  Preferences& preferences = services_.preferences;
  auto& tokens = observerDisposables_;
  tokens.push_back(preferences.playingVideoSign.observe([this](const auto& sign) { sign_.follow(sign); }));
  tokens.push_back(preferences.isPlaying.observe([this](bool playing) { setPlaying(playing); }));
  tokens.push_back(preferences.playModel.observe([this](std::int64_t raw) { changePlayModel(raw); }));
  tokens.push_back(preferences.isOpenPlayer.observe([this](bool opens) { opens ? open() : close(); }));
  tokens.push_back(preferences.mute.bind(*this, &VideoPlayerManager::setMuted));
  tokens.push_back(preferences.volume.bind(*this, &VideoPlayerManager::setVolume));
  tokens.push_back(preferences.screenIndex.observe([this](std::int64_t index) { changeScreenIndex(index); }));
  tokens.push_back(preferences.monitorArrange.observe([this](std::int64_t raw) { changeMonitorArrange(raw); }));
}

// Windows

void VideoPlayerManager::buildWindows() {
  windows_.build();
  if (services_.preferences.isOpenPlayer.get()) {
    playback_.resume();
    setIsPlaying();
  } else {
    close();
  }
}

void VideoPlayerManager::relayout() {
  windows_.orderOut();
  buildWindows();
}

void VideoPlayerManager::setHideDesktopIcon(bool hide) {
  isHideDesktopIcon = hide;
  if (services_.preferences.isOpenPlayer.get()) {
    applyLevelAndOrder();
  }
}

void VideoPlayerManager::screensChanged() {
  if (services_.preferences.isOpenPlayer.get() && !windows_.fitScreens()) {
    relayout();
  }
}

std::optional<std::int64_t> VideoPlayerManager::valueForKey(std::string_view key) const {
  if (key == "screenType") {
    return static_cast<std::int64_t>(screenType);
  }
  if (key == "screenIndex") {
    return screenIndex;
  }
  return std::nullopt;
}

void VideoPlayerManager::changeScreenIndex(std::int64_t index) {
  screenType = VideoPlayerScreenType::lonely;
  screenIndex = index;
  relayout();
}

void VideoPlayerManager::changeMonitorArrange(std::int64_t raw) {
  screenType = screenTypeOnChange(raw);
  relayout();
}

// Playlist

// Changes that are notified together are handled together.
void VideoPlayerManager::libraryChanged() {
  if (!rebuildSoon_) {
    rebuildSoon_ = services_.runLoop.after(std::chrono::milliseconds(0), [this] {
      rebuildSoon_.reset();
      // Whoever removes the video that is playing has named the next one first: it is followed before the list changes.
      services_.preferences.updateUserDefaultFromDisk();
      updateVideoList();
    });
  }
}

void VideoPlayerManager::updateVideoList() {
  const bool wasSearching = playlist_.isSearching();
  // During a search, or while a sign is followed, the settings do not name the video whose turn it is.
  const bool keepsTurn = wasSearching || sign_.isFollowing();
  if (playlist_.rebuild(keepsTurn ? Playlist::Current::kept : Playlist::Current::named)) {
    playback_.searchAgain(wasSearching);
  }
}

void VideoPlayerManager::changePlayModel(std::int64_t raw) {
  playlist_.setModel(playModelFromRawValue(raw));
  updateVideoList();
  playback_.updateRepeating();
}

// Playback

void VideoPlayerManager::open() {
  playCurrent();
  setIsPlaying();
}

// A wallpaper that is opened plays, and the settings and the menu show that.
void VideoPlayerManager::setIsPlaying() {
  if (!services_.preferences.isPlaying.get()) {
    services_.preferences.isPlaying.set(true);
  }
}

}  // namespace quilex
