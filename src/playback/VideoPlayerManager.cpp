#include "playback/VideoPlayerManager.h"

#include <chrono>
#include <utility>

#include "library/FileURL.h"

namespace quilex {

namespace {

// Between two looks for a file when no video of the playlist has one, or none can be played.
constexpr std::chrono::seconds kSearchInterval{1};

}  // namespace

VideoPlayerManager::VideoPlayerManager(Services theServices)
    : screenType(screenTypeAtStart(theServices.preferences.monitorArrange.get())),
      screenIndex(theServices.preferences.screenIndex.get()),
      services(std::move(theServices)),
      model(playModelFromRawValue(services.preferences.playModel.get())),
      coveredScreens(services.windowServer.screens()) {
  registrations.push_back(services.windowServer.observeActiveSpace([this] { activeSpaceDidChange(); }));
  registrations.push_back(services.notificationCenter.observe("UpdateVideoList", [this] {
    // Whoever removes the video that is playing has named the next one before; it is followed from the list as it was.
    services.preferences.updateUserDefaultFromDisk();
    updateVideoList();
  }));
  observeSettings();
}

VideoPlayerManager::~VideoPlayerManager() {
  // The windows' views refer to the player.
  windows.clear();
}

void VideoPlayerManager::observeSettings() {
  Preferences& preferences = services.preferences;
  auto& tokens = observerDisposables;
  tokens.push_back(preferences.playingVideoSign.observe([this](const auto& sign) { followSign(sign); }));
  tokens.push_back(preferences.isPlaying.observe([this](bool playing) { setPlaying(playing); }));
  tokens.push_back(preferences.playModel.observe([this](std::int64_t raw) { changePlayModel(raw); }));
  tokens.push_back(preferences.isOpenPlayer.observe([this](bool open) { open ? playCurrent() : close(); }));
  tokens.push_back(preferences.mute.bind(*this, &VideoPlayerManager::setMuted));
  tokens.push_back(preferences.volume.bind(*this, &VideoPlayerManager::setVolume));
  tokens.push_back(preferences.screenIndex.observe([this](std::int64_t index) { changeScreenIndex(index); }));
  tokens.push_back(preferences.monitorArrange.observe([this](std::int64_t raw) { changeMonitorArrange(raw); }));
}

VideoPlayer& VideoPlayerManager::player() {
  if (!sharedPlayer) {
    rebuildPlaylist();
    sharedPlayer = services.makePlayer();
    sharedPlayer->setVolume(services.preferences.volume.get());
    sharedPlayer->setMuted(services.preferences.mute.get());
    itemEndObservation = sharedPlayer->observeItemEnd([this] { playerItemDidReachEnd(); });
    loadPlayableNode();
  }
  return *sharedPlayer;
}

// Loads the first video from the current one on whose file exists. While there is none, looks again every second (at
// once when the playlist is rebuilt) and leaves the player's item as it is.
void VideoPlayerManager::loadPlayableNode() {
  search.reset();
  awaitsPlayableNode = !skipToPlayableNode();
  if (awaitsPlayableNode) {
    if (list.size() > 0) {
      searchAgain(kSearchInterval);
    }
    return;
  }
  statusObservation.reset();
  sharedPlayer->replaceCurrentItem(*localPath(list.current()->val.url));
  statusObservation = sharedPlayer->observeStatus([this](PlayerItemStatus status) { itemStatusChanged(status); });
}

void VideoPlayerManager::searchAgain(std::chrono::milliseconds delay) {
  search = services.runLoop.after(delay, [this] {
    loadPlayableNode();
    if (!awaitsPlayableNode) {
      syncSign();
    }
  });
}

void VideoPlayerManager::playCurrent() {
  applyLevelAndOrder();
  player();
  failuresInARow = 0;
  loadPlayableNode();
  applyLevelAndOrder();
  player().play();
  syncSign();
}

void VideoPlayerManager::close() {
  player().pause();
  for (const auto& window : windows) {
    window->orderOut();
  }
}

void VideoPlayerManager::setPlaying(bool playing) {
  if (!playing) {
    player().pause();
    return;
  }
  applyLevelAndOrder();
  player().play();
  syncSign();
}

void VideoPlayerManager::playerItemDidReachEnd() {
  if (list.current() != nullptr && model == VideoPlayerPlayModel::single) {
    player().seekToZero();
    return;
  }
  advance();
  if (list.current() != nullptr) {
    loadPlayableNode();
  } else if (player().hasCurrentItem()) {
    // An empty library, which does not stop what plays.
    player().seekToZero();
  }
  syncSign();
}

// A video that cannot be played counts as finished. When every video of the playlist has failed in turn, the next
// round starts after a pause, so that a library of broken files does not keep the processor busy.
void VideoPlayerManager::itemStatusChanged(PlayerItemStatus status) {
  if (status == PlayerItemStatus::readyToPlay) {
    failuresInARow = 0;
  } else if (status == PlayerItemStatus::failed) {
    if (++failuresInARow < list.size() || model == VideoPlayerPlayModel::single) {
      playerItemDidReachEnd();
    } else {
      failuresInARow = 0;
      search = services.runLoop.after(kSearchInterval, [this] { playerItemDidReachEnd(); });
    }
  }
}

void VideoPlayerManager::tapVideoPlayerViewAction() {
  services.console.print("tapVideoPlayerViewAction");
}

}  // namespace quilex
