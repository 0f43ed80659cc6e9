#include <chrono>
#include <utility>

#include "app/FatalError.h"
#include "library/FileURL.h"
#include "playback/VideoPlayerManager.h"

namespace quilex {

namespace {

// Another process may hold the library for long, and each attempt waits for it a while.
constexpr std::chrono::seconds kRereadInterval{10};

// Every order is equally likely: an index is drawn among those that remain until none does (Fisher and Yates).
void shuffle(std::vector<VideoDetail>& videos, const UniformRandom& random) {
  for (std::size_t drawn = 0; drawn < videos.size(); ++drawn) {
    std::swap(videos[drawn], videos[drawn + random(videos.size() - drawn)]);
  }
}

}  // namespace

void VideoPlayerManager::updateVideoList() {
  rebuildPlaylist();
  if (awaitsPlayableNode) {
    searchAgain(std::chrono::milliseconds(0));
  }
}

void VideoPlayerManager::rebuildPlaylist() {
  const std::lock_guard lock(videoListLocker);
  reread.reset();
  auto videos = services.library.allVideos();
  listWasRead = services.library.answered();
  if (!listWasRead) {
    // What was known of the library holds until it can be read again.
    reread = services.runLoop.after(kRereadInterval, [this] { updateVideoList(); });
    return;
  }
  list.clear();
  if (model == VideoPlayerPlayModel::random) {
    shuffle(videos, services.random);
  }
  for (VideoDetail& video : videos) {
    list.append(std::move(video));
  }
  if (const auto& sign = services.preferences.playingVideoSign.get()) {
    list.moveTo(*sign);
  }
}

void VideoPlayerManager::advance() {
  switch (model) {
    case VideoPlayerPlayModel::single:
      break;
    case VideoPlayerPlayModel::list:
      list.moveToNext();
      break;
    case VideoPlayerPlayModel::random:
      if (list.isAtTail()) {
        rebuildPlaylist();
        list.moveToHead();
      } else {
        list.moveToNext();
      }
      break;
  }
}

// One pass over the playlist from the current video on; false, with the current video where it was, when no file
// exists or the playlist is empty.
bool VideoPlayerManager::skipToPlayableNode() {
  for (std::size_t tried = 0; tried < list.size(); ++tried) {
    if (namesExistingFile(list.current()->val.url)) {
      return true;
    }
    list.moveToNext();
  }
  return false;
}

bool VideoPlayerManager::isAvailable(const std::string& sign) {
  const auto video = services.library.video(sign);
  return video && namesExistingFile(video->url);
}

void VideoPlayerManager::followSign(const std::optional<std::string>& sign) {
  if (!sign) {
    fatalError("the sign of the playing video was removed");
  }
  if (list.current() != nullptr && list.current()->val.sign == *sign) {
    return;
  }
  if (!isAvailable(*sign)) {
    // A library that could not be read says nothing about the video.
    if (services.library.answered()) {
      services.library.deleteVideo(*sign);
    }
    return;
  }
  player().pause();
  rebuildPlaylist();
  list.moveTo(*sign);
  playCurrent();
}

void VideoPlayerManager::changePlayModel(std::int64_t raw) {
  model = playModelFromRawValue(raw);
  updateVideoList();
}

void VideoPlayerManager::syncSign() {
  if (list.current() == nullptr && !listWasRead) {
    // The library could not be read, which says nothing about the video that is playing.
    return;
  }
  const auto sign = list.current() != nullptr ? std::optional(list.current()->val.sign) : std::nullopt;
  if (sign == services.preferences.playingVideoSign.get()) {
    return;
  }
  if (!sign && services.preferences.libraryWasEmptied()) {
    services.preferences.forgetPlayingVideoSign();
  } else {
    services.preferences.playingVideoSign.set(sign);
  }
}

}  // namespace quilex
