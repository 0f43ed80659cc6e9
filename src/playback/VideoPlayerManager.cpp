#include "playback/VideoPlayerManager.h"

#include <chrono>
#include <utility>

#include "library/FileURL.h"

namespace quilex {

namespace {

// Between two searches when no video of the playlist can be loaded.
constexpr std::chrono::seconds kSearchInterval{1};

}  // namespace

VideoPlayerManager::VideoPlayerManager(Services theServices)
    : screenType(screenTypeAtStart(theServices.preferences.monitorArrange.get())),
      screenIndex(theServices.preferences.screenIndex.get()),
      services(std::move(theServices)),
      model(playModelFromRawValue(services.preferences.playModel.get())),
      mark(services.standardDefaults, services.console),
      coveredScreens(services.windowServer.screens()),
      search(
          list, services.fileFinder,
          [this](const VideoDetail& video) { return failedSigns.contains(video.sign) || mark.refuses(video.sign); },
          [this](const auto& file) { searchDone(file); }) {
  registrations.push_back(services.windowServer.observeActiveSpace([this] { activeSpaceDidChange(); }));
  registrations.push_back(services.notificationCenter.observe("UpdateVideoList", [this] { libraryChanged(); }));
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
  tokens.push_back(preferences.isOpenPlayer.observe([this](bool opens) { opens ? open() : close(); }));
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
    itemEndObservation = sharedPlayer->observeItemEnd([this] {
      services.console.log(LogLevel::debug, "video " + itemSign + " has ended");
      failedSigns.clear();
      playerItemDidReachEnd();
    });
    updateRepeating();
    loadPlayableNode();
  }
  return *sharedPlayer;
}

// Loads the first video from the current one on that can be loaded. While there is none, looks again every second (at
// once when the playlist is rebuilt) and leaves the player's item as it is.
void VideoPlayerManager::loadPlayableNode() {
  nextSearch.reset();
  search.start();
}

void VideoPlayerManager::loadPlayableNodeLater() {
  nextSearch = services.runLoop.after(kSearchInterval, [this] {
    failedSigns.clear();
    syncWhenSearched = Sync::ifFound;
    loadPlayableNode();
  });
}

void VideoPlayerManager::searchDone(const std::optional<std::filesystem::path>& file) {
  awaitsPlayableNode = !file;
  if (file) {
    load(*file);
  } else if (list.size() > 0) {
    services.console.log(LogLevel::info, "no video of the playlist can be loaded now");
    // Also when every video of the playlist has failed in turn: a library of broken files does not keep the processor
    // busy.
    loadPlayableNodeLater();
  }
  if (std::exchange(playsWhenSearched, false)) {
    applyLevelAndOrder();
    sharedPlayer->play();
  }
  const Sync sync = std::exchange(syncWhenSearched, Sync::no);
  if (sync == Sync::yes || (sync == Sync::ifFound && file)) {
    syncSign();
  }
}

void VideoPlayerManager::load(const std::filesystem::path& file) {
  itemSign = list.current()->val.sign;
  services.console.log(LogLevel::info, "loads video " + itemSign + ", " + file.string());
  services.report.update([&](AgentStatus& status) {
    status.videoSign = itemSign;
    status.videoTitle = list.current()->val.title;
  });
  // What has just been shown may be loaded again without a word of the player, and does no harm.
  if (!itemIsReady || file != itemFile) {
    mark.set(itemSign);
    itemIsReady = false;
    setVideoState("loading");
  }
  itemFile = file;
  statusObservation.reset();
  updateRepeating();
  sharedPlayer->replaceCurrentItem(file);
  statusObservation = sharedPlayer->observeStatus([this](PlayerItemStatus status) { itemStatusChanged(status); });
}

void VideoPlayerManager::playCurrent() {
  applyLevelAndOrder();
  player();
  failedSigns.clear();
  playsWhenSearched = true;
  syncWhenSearched = Sync::yes;
  loadPlayableNode();
}

// Whoever opens the player, the picture moves, so the settings and the menu say so.
void VideoPlayerManager::open() {
  playCurrent();
  if (!services.preferences.isPlaying.get()) {
    services.preferences.isPlaying.set(true);
  }
}

void VideoPlayerManager::close() {
  playsWhenSearched = false;
  player().pause();
  for (const auto& window : windows) {
    window->orderOut();
  }
}

void VideoPlayerManager::setPlaying(bool playing) {
  if (!playing) {
    playsWhenSearched = false;
    player().pause();
  } else if (services.preferences.isOpenPlayer.get() && !playsWhenSearched) {
    applyLevelAndOrder();
    player().play();
    syncSign();
  }
}

void VideoPlayerManager::playerItemDidReachEnd() {
  if (list.current() != nullptr && model == VideoPlayerPlayModel::single) {
    player().seekToZero();
    return;
  }
  advance();
  if (list.current() != nullptr) {
    loadPlayableNode();
  } else {
    // An empty library, which does not stop what plays.
    syncWhenSearched = Sync::no;
    if (std::exchange(playsWhenSearched, false)) {
      player().play();
    }
    if (player().hasCurrentItem()) {
      player().seekToZero();
    }
  }
  syncSign();
}

// A video that cannot be played counts as finished.
void VideoPlayerManager::itemStatusChanged(PlayerItemStatus status) {
  if (status == PlayerItemStatus::unknown) {
    return;
  }
  mark.clear();
  itemIsReady = status == PlayerItemStatus::readyToPlay;
  setVideoState(itemIsReady ? "ready" : "failed");
  if (!itemIsReady) {
    services.console.log(LogLevel::warning, "video " + itemSign + " cannot be played; the next one is looked for");
    failedSigns.insert(itemSign);
    playerItemDidReachEnd();
  }
}

void VideoPlayerManager::setVideoState(const char* state) {
  services.report.update([&](AgentStatus& status) { status.videoState = state; });
}

// A video that is followed by itself need not be loaded again. The end of one whose library is empty is of interest.
void VideoPlayerManager::updateRepeating() {
  const VideoInfoNode* const current = list.current();
  const bool isAlone = list.size() == 1 && localPath(current->val.url) == itemFile;
  const bool follows = current != nullptr && (model == VideoPlayerPlayModel::single || isAlone);
  if (sharedPlayer && repeats != follows) {
    repeats = follows;
    sharedPlayer->setRepeating(follows);
  }
}

void VideoPlayerManager::tapVideoPlayerViewAction() {
  services.console.print("tapVideoPlayerViewAction");
}

}  // namespace quilex
