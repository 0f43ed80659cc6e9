#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include "base/FatalError.h"
#include "library/FileURL.h"
#include "playback/VideoPlayerManager.h"

namespace quilex {

namespace {

// Every order is equally likely: an index is drawn among those that remain until none does (Fisher and Yates).
void shuffle(std::vector<VideoDetail>& videos, const UniformRandom& random) {
  for (std::size_t drawn = 0; drawn < videos.size(); ++drawn) {
    std::swap(videos[drawn], videos[drawn + random(videos.size() - drawn)]);
  }
}

}  // namespace

std::chrono::milliseconds VideoPlayerManager::RetryDelay::next() {
  return std::exchange(delay_, std::min(2 * delay_, kLongest));
}

// Many changes that are notified together are one.
void VideoPlayerManager::libraryChanged() {
  if (!rebuildSoon_) {
    rebuildSoon_ = services_.runLoop.after(std::chrono::milliseconds(0), [this] {
      rebuildSoon_.reset();
      // Whoever removes the video that is playing has named the next one before; it is followed from the list as it
      // was.
      services_.preferences.updateUserDefaultFromDisk();
      updateVideoList();
    });
  }
}

void VideoPlayerManager::updateVideoList() {
  // While a video is looked for, the settings do not name the one whose turn it is; it and those after it do.
  std::vector<std::string> turns;
  const bool searches = search_.isUnderWay();
  if (searches || following_) {
    const VideoInfoNode* node = list_.current();
    for (std::size_t count = 0; count < list_.size(); ++count) {
      turns.push_back(node->val.sign);
      node = node->next ? node->next.get() : list_.head();
    }
  }
  rebuildPlaylist();
  if (!listWasRead_) {
    return;
  }
  for (auto turn = turns.begin(); turn != turns.end() && !list_.moveTo(*turn); ++turn) {
  }
  if (searches) {
    loadPlayableNode();
  } else if (awaitsPlayableNode_) {
    syncWhenSearched_ = Sync::ifFound;
    loadPlayableNode();
  }
}

void VideoPlayerManager::rebuildPlaylist() {
  const std::lock_guard lock(videoListLocker_);
  reread_.reset();
  auto videos = services_.library.allVideos();
  listWasRead_ = services_.library.answered();
  if (!listWasRead_) {
    // What was known of the library holds until it can be read again.
    services_.console.log(LogLevel::warning, "the library cannot be read; what was known of it holds");
    reread_ = services_.runLoop.after(rereadDelay_.next(), [this] { updateVideoList(); });
    return;
  }
  rereadDelay_.reset();
  search_.cancel();
  list_.clear();
  if (model_ == VideoPlayerPlayModel::random) {
    shuffle(videos, services_.random);
  }
  for (VideoDetail& video : videos) {
    list_.append(std::move(video));
  }
  if (const auto& sign = services_.preferences.playingVideoSign.get()) {
    list_.moveTo(*sign);
  }
  services_.console.log(LogLevel::debug, "videos in the playlist: " + std::to_string(list_.size()));
  services_.report.update(
      [&](AgentStatus& status) { status.libraryVideos = static_cast<std::uint32_t>(list_.size()); });
  updateRepeating();
}

void VideoPlayerManager::advance() {
  switch (model_) {
    case VideoPlayerPlayModel::single:
      break;
    case VideoPlayerPlayModel::list:
      list_.moveToNext();
      break;
    case VideoPlayerPlayModel::random:
      if (list_.isAtTail()) {
        rebuildPlaylist();
        list_.moveToHead();
      } else {
        list_.moveToNext();
      }
      break;
  }
}

void VideoPlayerManager::followSign(const std::optional<std::string>& sign) {
  if (!sign) {
    fatalError("the sign of the playing video was removed");
  }
  following_.reset();
  syncsAfterFollowing_ = false;
  if (list_.current() != nullptr && list_.current()->val.sign == *sign) {
    return;
  }
  services_.console.log(LogLevel::info, "the settings name video " + *sign);
  mark_.allow(*sign);
  followDelay_.reset();
  testAvailability(*sign);
}

void VideoPlayerManager::testAvailability(const std::string& sign) {
  const auto video = services_.library.video(sign);
  if (!video && !services_.library.answered()) {
    // A library that could not be read says nothing about the video.
    testAvailabilityLater(sign);
    return;
  }
  auto file = video ? localPath(video->url) : std::nullopt;
  if (!file) {
    deleteUnavailable(sign);
    return;
  }
  following_ = services_.fileFinder.findFirst({std::move(*file)}, [this, sign](const FileFinder::Answer& answer) {
    if (answer.found) {
      playFollowed(sign);
    } else if (answer.someUnanswered) {
      endFollowing();
    } else {
      deleteUnavailable(sign);
    }
  });
}

void VideoPlayerManager::testAvailabilityLater(const std::string& sign) {
  following_ = services_.runLoop.after(followDelay_.next(), [this, sign] { testAvailability(sign); });
}

void VideoPlayerManager::playFollowed(const std::string& sign) {
  rebuildPlaylist();
  if (!list_.moveTo(sign) && !listWasRead_) {
    testAvailabilityLater(sign);
    return;
  }
  following_.reset();
  player().pause();
  if (services_.preferences.isOpenPlayer.get() && services_.preferences.isPlaying.get()) {
    playCurrent();
  } else {
    // It was closed or paused since; the video is the next to be seen.
    failedSigns_.clear();
    syncWhenSearched_ = Sync::yes;
    loadPlayableNode();
  }
}

// The player keeps playing what it plays.
void VideoPlayerManager::deleteUnavailable(const std::string& sign) {
  services_.console.log(LogLevel::warning, "video " + sign + " has no file; it is deleted from the library");
  const bool wasThere = services_.library.video(sign).has_value();
  services_.library.deleteVideo(sign);
  if (wasThere && services_.library.allVideos().empty() && services_.library.answered()) {
    services_.preferences.setLibraryWasEmptied();
  }
  endFollowing();
}

// What was put off meanwhile is made up for.
void VideoPlayerManager::endFollowing() {
  if (following_) {
    following_.reset();
    if (std::exchange(syncsAfterFollowing_, false)) {
      syncSign();
    }
  }
}

void VideoPlayerManager::changePlayModel(std::int64_t raw) {
  model_ = playModelFromRawValue(raw);
  updateVideoList();
  updateRepeating();
}

void VideoPlayerManager::syncSign() {
  if (search_.isUnderWay()) {
    syncWhenSearched_ = Sync::yes;
    return;
  }
  if (following_) {
    syncsAfterFollowing_ = true;
    return;
  }
  if (list_.current() == nullptr && !listWasRead_) {
    // The library could not be read, which says nothing about the video that is playing.
    return;
  }
  const auto sign = list_.current() != nullptr ? std::optional(list_.current()->val.sign) : std::nullopt;
  // A choice that is still to be followed is not overwritten.
  if (sign == services_.preferences.playingVideoSign.get() || services_.preferences.isAnotherVideoChosen()) {
    return;
  }
  if (!sign && services_.preferences.libraryWasEmptied()) {
    services_.preferences.forgetPlayingVideoSign();
  } else {
    services_.preferences.playingVideoSign.set(sign);
  }
}

}  // namespace quilex
