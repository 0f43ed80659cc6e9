#include "playback/Playback.h"

#include <chrono>
#include <utility>

#include "library/FileURL.h"

namespace quilex {

namespace {

// Between two searches when no video of the playlist can be loaded.
constexpr std::chrono::seconds kSearchInterval{1};

}  // namespace

Playback::Playback(const PlaybackServices& services, LoadingMark& mark, Playlist& playlist, WallpaperWindows& windows,
                   std::function<void()> syncSign)
    : services_(services), mark_(mark), playlist_(playlist), windows_(windows), syncSign_(std::move(syncSign)) {}

VideoPlayer& Playback::player() {
  mainThread_.check();
  if (!player_) {
    playlist_.rebuild(Playlist::Current::named);
    player_ = services_.makePlayer();
    player_->setVolume(services_.preferences.volume.get());
    player_->setMuted(services_.preferences.mute.get());
    player_->setHeld(isHeld_);
    itemEndObservation_ = player_->observeItemEnd([this] {
      services_.console.log(LogLevel::debug, "video " + itemSign_ + " has ended");
      failedSigns_.clear();
      playerItemDidReachEnd();
    });
    updateRepeating();
    search();
  }
  return *player_;
}

void Playback::playCurrent() {
  windows_.applyLevelAndOrder();
  player();
  playsWhenSearched_ = true;
  loadCurrent();
}

void Playback::loadCurrent() {
  failedSigns_.clear();
  syncWhenSearched_ = Sync::yes;
  search();
}

void Playback::resume() {
  windows_.applyLevelAndOrder();
  player().play();
  syncSign_();
}

void Playback::close() {
  playsWhenSearched_ = false;
  player().pause();
  windows_.orderOut();
}

void Playback::setPlaying(bool playing) {
  if (!playing) {
    playsWhenSearched_ = false;
    player().pause();
  } else if (services_.preferences.isOpenPlayer.get() && !playsWhenSearched_) {
    resume();
  }
}

void Playback::setHeld(bool isHeld) {
  isHeld_ = isHeld;
  updateMark();
  if (player_) {
    player_->setHeld(isHeld);
  }
  nextSearch_.reset();
  if (lastSearchFailed_ && !playlist_.isSearching()) {
    searchLater();
  }
}

// Loads the first video from the current one on that can be loaded.
void Playback::search() {
  nextSearch_.reset();
  playlist_.search(
      [this](const VideoDetail& video) { return failedSigns_.contains(video.sign) || mark_.refuses(video.sign); },
      [this](const auto& file) { searchDone(file); });
}

// While nothing is to move, nothing is looked for: releasing and opening do that.
void Playback::searchLater() {
  if (isHeld_ || !services_.preferences.isOpenPlayer.get()) {
    return;
  }
  nextSearch_ = services_.runLoop.after(kSearchInterval, [this] {
    failedSigns_.clear();
    syncWhenSearched_ = Sync::ifFound;
    search();
  });
}

void Playback::searchAgain(bool wasSearching) {
  if (wasSearching) {
    search();
  } else if (lastSearchFailed_) {
    syncWhenSearched_ = Sync::ifFound;
    search();
  }
}

void Playback::searchDone(const std::optional<std::filesystem::path>& file) {
  lastSearchFailed_ = !file;
  if (file) {
    load(*file);
  } else if (playlist_.list().size() > 0) {
    services_.console.log(LogLevel::info, "no video of the playlist can be loaded now");
    // The pause also keeps a library of broken files, which all fail in turn, from using up the processor.
    searchLater();
  }
  if (std::exchange(playsWhenSearched_, false)) {
    windows_.applyLevelAndOrder();
    player_->play();
  }
  const Sync sync = std::exchange(syncWhenSearched_, Sync::no);
  if (sync == Sync::yes || (sync == Sync::ifFound && file)) {
    syncSign_();
  }
}

void Playback::load(const std::filesystem::path& file) {
  const VideoDetail& video = *playlist_.current();
  itemSign_ = video.sign;
  services_.console.log(LogLevel::info, "loads video " + itemSign_ + ", " + file.string());
  services_.report.update([&](AgentStatus& status) {
    status.videoSign = video.sign;
    status.videoTitle = video.title;
  });
  // A file that was ready once is harmless, and the player need not report its status again.
  if (!itemIsReady_ || file != itemFile_) {
    isLoading_ = true;
    itemIsReady_ = false;
    updateMark();
    setVideoState("loading");
  }
  itemFile_ = file;
  statusObservation_.reset();
  updateRepeating();
  player_->replaceCurrentItem(file);
  statusObservation_ = player_->observeStatus([this](PlayerItemStatus status) { itemStatusChanged(status); });
}

void Playback::playerItemDidReachEnd() {
  if (playlist_.current() != nullptr && playlist_.model() == VideoPlayerPlayModel::single) {
    player().seekToZero();
    return;
  }
  playlist_.advance();
  if (playlist_.current() != nullptr) {
    search();
  } else {
    // The library is empty: the player starts its item again.
    syncWhenSearched_ = Sync::no;
    if (std::exchange(playsWhenSearched_, false)) {
      player().play();
    }
    if (player().hasCurrentItem()) {
      player().seekToZero();
    }
  }
  syncSign_();
}

// A video that cannot be played counts as ended.
void Playback::itemStatusChanged(PlayerItemStatus status) {
  if (status == PlayerItemStatus::unknown) {
    return;
  }
  isLoading_ = false;
  updateMark();
  itemIsReady_ = status == PlayerItemStatus::readyToPlay;
  setVideoState(itemIsReady_ ? "ready" : "failed");
  if (!itemIsReady_) {
    services_.console.log(LogLevel::warning, "video " + itemSign_ + " cannot be played; the next one is looked for");
    failedSigns_.insert(itemSign_);
    playerItemDidReachEnd();
  }
}

void Playback::setVideoState(const char* state) {
  services_.report.update([&](AgentStatus& status) { status.videoState = state; });
}

// A held player loads nothing that could bring the agent down.
void Playback::updateMark() {
  if (isLoading_ && !isHeld_) {
    mark_.set(itemSign_);
  } else {
    mark_.clear();
  }
}

// A repeating player loads nothing again and reports no end. While the library is empty each end is needed, to look for
// new videos then.
void Playback::updateRepeating() {
  const VideoDetail* const current = playlist_.current();
  const bool isAlone = playlist_.list().size() == 1 && localPath(current->url) == itemFile_;
  const bool follows = current != nullptr && (playlist_.model() == VideoPlayerPlayModel::single || isAlone);
  if (player_ && repeats_ != follows) {
    repeats_ = follows;
    player_->setRepeating(follows);
  }
}

}  // namespace quilex
