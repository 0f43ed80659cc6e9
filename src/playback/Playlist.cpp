#include "playback/Playlist.h"

#include <cstdint>
#include <utility>

namespace quilex {

namespace {

// Fisher and Yates: draws each place's video from those that remain, so that every order is equally likely.
void shuffle(std::vector<VideoDetail>& videos, const UniformRandom& random) {
  for (std::size_t drawn = 0; drawn < videos.size(); ++drawn) {
    std::swap(videos[drawn], videos[drawn + random(videos.size() - drawn)]);
  }
}

}  // namespace

Playlist::Playlist(const PlaybackServices& services, std::function<void()> rebuilt, std::function<void()> readAgain)
    : services_(services),
      rebuilt_(std::move(rebuilt)),
      readAgain_(std::move(readAgain)),
      model_(playModelFromRawValue(services.preferences.playModel.get())),
      search_(list_, services.fileFinder) {}

bool Playlist::rebuild(Current current) {
  mainThread_.check();
  const std::lock_guard lock(videoListLocker_);
  retry_.reset();
  auto videos = services_.library.allVideos();
  wasRead_ = videos.has_value();
  if (!wasRead_) {
    services_.console.log(LogLevel::warning, "the library cannot be read; what was known of it holds");
    retry_ = services_.runLoop.after(retryDelay_.next(), readAgain_);
    return false;
  }
  retryDelay_.reset();
  const auto turns = current == Current::kept ? signsFromCurrent() : std::vector<std::string>();
  search_.cancel();
  if (model_ == VideoPlayerPlayModel::random) {
    shuffle(*videos, services_.random);
  }
  list_.assign(*std::move(videos));
  if (const auto& sign = services_.preferences.playingVideoSign.get()) {
    list_.moveTo(*sign);
  }
  for (auto turn = turns.begin(); turn != turns.end() && !list_.moveTo(*turn); ++turn) {
  }
  services_.console.log(LogLevel::debug, "videos in the playlist: " + std::to_string(list_.size()));
  services_.report.update(
      [this](AgentStatus& status) { status.libraryVideos = static_cast<std::uint32_t>(list_.size()); });
  rebuilt_();
  return true;
}

// Once around the list.
std::vector<std::string> Playlist::signsFromCurrent() const {
  std::vector<std::string> signs;
  for (std::size_t step = 0; step < list_.size(); ++step) {
    signs.push_back(list_.after(step).sign);
  }
  return signs;
}

void Playlist::advance() {
  if (model_ == VideoPlayerPlayModel::random && list_.isAtTail()) {
    rebuild(Current::named);
    list_.moveToHead();
  } else if (model_ != VideoPlayerPlayModel::single) {
    list_.moveOn();
  }
}

}  // namespace quilex
