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

Playlist::Playlist(Services services)
    : services_(std::move(services)),
      model_(playModelFromRawValue(services_.preferences.playModel.get())),
      search_(list_, services_.fileFinder) {}

bool Playlist::rebuild(Current current) {
  const std::lock_guard lock(videoListLocker_);
  retry_.reset();
  auto videos = services_.library.allVideos();
  wasRead_ = videos.has_value();
  if (!wasRead_) {
    services_.console.log(LogLevel::warning, "the library cannot be read; what was known of it holds");
    retry_ = services_.runLoop.after(retryDelay_.next(), services_.readAgain);
    return false;
  }
  retryDelay_.reset();
  const auto turns = current == Current::kept ? signsFromCurrent() : std::vector<std::string>();
  search_.cancel();
  list_.clear();
  if (model_ == VideoPlayerPlayModel::random) {
    shuffle(*videos, services_.random);
  }
  for (VideoDetail& video : *videos) {
    list_.append(std::move(video));
  }
  if (const auto& sign = services_.preferences.playingVideoSign.get()) {
    list_.moveTo(*sign);
  }
  for (auto turn = turns.begin(); turn != turns.end() && !list_.moveTo(*turn); ++turn) {
  }
  services_.console.log(LogLevel::debug, "videos in the playlist: " + std::to_string(list_.size()));
  services_.report.update(
      [this](AgentStatus& status) { status.libraryVideos = static_cast<std::uint32_t>(list_.size()); });
  services_.rebuilt();
  return true;
}

// Once around the list.
std::vector<std::string> Playlist::signsFromCurrent() const {
  std::vector<std::string> signs;
  const VideoInfoNode* node = list_.current();
  for (std::size_t count = 0; count < list_.size(); ++count) {
    signs.push_back(node->val.sign);
    node = node->next ? node->next.get() : list_.head();
  }
  return signs;
}

void Playlist::advance() {
  switch (model_) {
    case VideoPlayerPlayModel::single:
      break;
    case VideoPlayerPlayModel::list:
      list_.moveToNext();
      break;
    case VideoPlayerPlayModel::random:
      if (list_.isAtTail()) {
        rebuild(Current::named);
        list_.moveToHead();
      } else {
        list_.moveToNext();
      }
      break;
  }
}

}  // namespace quilex
