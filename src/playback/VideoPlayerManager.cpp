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
      services_(std::move(theServices)),
      model_(playModelFromRawValue(services_.preferences.playModel.get())),
      mark_(services_.standardDefaults, services_.console),
      coveredScreens_(services_.windowServer.screens()),
      search_(
          list_, services_.fileFinder,
          [this](const VideoDetail& video) { return failedSigns_.contains(video.sign) || mark_.refuses(video.sign); },
          [this](const auto& file) { searchDone(file); }) {
  registrations_.push_back(services_.windowServer.observeActiveSpace([this] { activeSpaceDidChange(); }));
  registrations_.push_back(services_.notificationCenter.observe("UpdateVideoList", [this] { libraryChanged(); }));
  observeSettings();
}

VideoPlayerManager::~VideoPlayerManager() {
  // The windows' views refer to the player.
  windows_.clear();
}

void VideoPlayerManager::observeSettings() {
  Preferences& preferences = services_.preferences;
  auto& tokens = observerDisposables_;
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
  if (!sharedPlayer_) {
    rebuildPlaylist();
    sharedPlayer_ = services_.makePlayer();
    sharedPlayer_->setVolume(services_.preferences.volume.get());
    sharedPlayer_->setMuted(services_.preferences.mute.get());
    itemEndObservation_ = sharedPlayer_->observeItemEnd([this] {
      services_.console.log(LogLevel::debug, "video " + itemSign_ + " has ended");
      failedSigns_.clear();
      playerItemDidReachEnd();
    });
    updateRepeating();
    loadPlayableNode();
  }
  return *sharedPlayer_;
}

// Loads the first video from the current one on that can be loaded. While there is none, looks again every second (at
// once when the playlist is rebuilt) and leaves the player's item as it is.
void VideoPlayerManager::loadPlayableNode() {
  nextSearch_.reset();
  search_.start();
}

void VideoPlayerManager::loadPlayableNodeLater() {
  nextSearch_ = services_.runLoop.after(kSearchInterval, [this] {
    failedSigns_.clear();
    syncWhenSearched_ = Sync::ifFound;
    loadPlayableNode();
  });
}

void VideoPlayerManager::searchDone(const std::optional<std::filesystem::path>& file) {
  awaitsPlayableNode_ = !file;
  if (file) {
    load(*file);
  } else if (list_.size() > 0) {
    services_.console.log(LogLevel::info, "no video of the playlist can be loaded now");
    // Also when every video of the playlist has failed in turn: a library of broken files does not keep the processor
    // busy.
    loadPlayableNodeLater();
  }
  if (std::exchange(playsWhenSearched_, false)) {
    applyLevelAndOrder();
    sharedPlayer_->play();
  }
  const Sync sync = std::exchange(syncWhenSearched_, Sync::no);
  if (sync == Sync::yes || (sync == Sync::ifFound && file)) {
    syncSign();
  }
}

void VideoPlayerManager::load(const std::filesystem::path& file) {
  itemSign_ = list_.current()->val.sign;
  services_.console.log(LogLevel::info, "loads video " + itemSign_ + ", " + file.string());
  services_.report.update([&](AgentStatus& status) {
    status.videoSign = itemSign_;
    status.videoTitle = list_.current()->val.title;
  });
  // What has just been shown may be loaded again without a word of the player, and does no harm.
  if (!itemIsReady_ || file != itemFile_) {
    mark_.set(itemSign_);
    itemIsReady_ = false;
    setVideoState("loading");
  }
  itemFile_ = file;
  statusObservation_.reset();
  updateRepeating();
  sharedPlayer_->replaceCurrentItem(file);
  statusObservation_ = sharedPlayer_->observeStatus([this](PlayerItemStatus status) { itemStatusChanged(status); });
}

void VideoPlayerManager::playCurrent() {
  applyLevelAndOrder();
  player();
  failedSigns_.clear();
  playsWhenSearched_ = true;
  syncWhenSearched_ = Sync::yes;
  loadPlayableNode();
}

// Whoever opens the player, the picture moves, so the settings and the menu say so.
void VideoPlayerManager::open() {
  playCurrent();
  if (!services_.preferences.isPlaying.get()) {
    services_.preferences.isPlaying.set(true);
  }
}

void VideoPlayerManager::close() {
  playsWhenSearched_ = false;
  player().pause();
  for (const auto& window : windows_) {
    window->orderOut();
  }
}

void VideoPlayerManager::setPlaying(bool playing) {
  if (!playing) {
    playsWhenSearched_ = false;
    player().pause();
  } else if (services_.preferences.isOpenPlayer.get() && !playsWhenSearched_) {
    applyLevelAndOrder();
    player().play();
    syncSign();
  }
}

void VideoPlayerManager::playerItemDidReachEnd() {
  if (list_.current() != nullptr && model_ == VideoPlayerPlayModel::single) {
    player().seekToZero();
    return;
  }
  advance();
  if (list_.current() != nullptr) {
    loadPlayableNode();
  } else {
    // An empty library, which does not stop what plays.
    syncWhenSearched_ = Sync::no;
    if (std::exchange(playsWhenSearched_, false)) {
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
  mark_.clear();
  itemIsReady_ = status == PlayerItemStatus::readyToPlay;
  setVideoState(itemIsReady_ ? "ready" : "failed");
  if (!itemIsReady_) {
    services_.console.log(LogLevel::warning, "video " + itemSign_ + " cannot be played; the next one is looked for");
    failedSigns_.insert(itemSign_);
    playerItemDidReachEnd();
  }
}

void VideoPlayerManager::setVideoState(const char* state) {
  services_.report.update([&](AgentStatus& status) { status.videoState = state; });
}

// A video that is followed by itself need not be loaded again. The end of one whose library is empty is of interest.
void VideoPlayerManager::updateRepeating() {
  const VideoInfoNode* const current = list_.current();
  const bool isAlone = list_.size() == 1 && localPath(current->val.url) == itemFile_;
  const bool follows = current != nullptr && (model_ == VideoPlayerPlayModel::single || isAlone);
  if (sharedPlayer_ && repeats_ != follows) {
    repeats_ = follows;
    sharedPlayer_->setRepeating(follows);
  }
}

void VideoPlayerManager::tapVideoPlayerViewAction() {
  services_.console.print("tapVideoPlayerViewAction");
}

}  // namespace quilex
