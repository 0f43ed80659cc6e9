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
  return std::exchange(delay, std::min(2 * delay, kLongest));
}

// Many changes that are notified together are one.
void VideoPlayerManager::libraryChanged() {
  if (!rebuildSoon) {
    rebuildSoon = services.runLoop.after(std::chrono::milliseconds(0), [this] {
      rebuildSoon.reset();
      // Whoever removes the video that is playing has named the next one before; it is followed from the list as it
      // was.
      services.preferences.updateUserDefaultFromDisk();
      updateVideoList();
    });
  }
}

void VideoPlayerManager::updateVideoList() {
  // While a video is looked for, the settings do not name the one whose turn it is; it and those after it do.
  std::vector<std::string> turns;
  const bool searches = search.isUnderWay();
  if (searches || following) {
    const VideoInfoNode* node = list.current();
    for (std::size_t count = 0; count < list.size(); ++count) {
      turns.push_back(node->val.sign);
      node = node->next ? node->next.get() : list.head();
    }
  }
  rebuildPlaylist();
  if (!listWasRead) {
    return;
  }
  for (auto turn = turns.begin(); turn != turns.end() && !list.moveTo(*turn); ++turn) {
  }
  if (searches) {
    loadPlayableNode();
  } else if (awaitsPlayableNode) {
    syncWhenSearched = Sync::ifFound;
    loadPlayableNode();
  }
}

void VideoPlayerManager::rebuildPlaylist() {
  const std::lock_guard lock(videoListLocker);
  reread.reset();
  auto videos = services.library.allVideos();
  listWasRead = services.library.answered();
  if (!listWasRead) {
    // What was known of the library holds until it can be read again.
    services.console.log(LogLevel::warning, "the library cannot be read; what was known of it holds");
    reread = services.runLoop.after(rereadDelay.next(), [this] { updateVideoList(); });
    return;
  }
  rereadDelay.reset();
  search.cancel();
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
  services.console.log(LogLevel::debug, "videos in the playlist: " + std::to_string(list.size()));
  services.report.update([&](AgentStatus& status) { status.libraryVideos = static_cast<std::uint32_t>(list.size()); });
  updateRepeating();
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

void VideoPlayerManager::followSign(const std::optional<std::string>& sign) {
  if (!sign) {
    fatalError("the sign of the playing video was removed");
  }
  following.reset();
  syncsAfterFollowing = false;
  if (list.current() != nullptr && list.current()->val.sign == *sign) {
    return;
  }
  services.console.log(LogLevel::info, "the settings name video " + *sign);
  mark.allow(*sign);
  followDelay.reset();
  testAvailability(*sign);
}

void VideoPlayerManager::testAvailability(const std::string& sign) {
  const auto video = services.library.video(sign);
  if (!video && !services.library.answered()) {
    // A library that could not be read says nothing about the video.
    testAvailabilityLater(sign);
    return;
  }
  auto file = video ? localPath(video->url) : std::nullopt;
  if (!file) {
    deleteUnavailable(sign);
    return;
  }
  following = services.fileFinder.findFirst({std::move(*file)}, [this, sign](const FileFinder::Answer& answer) {
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
  following = services.runLoop.after(followDelay.next(), [this, sign] { testAvailability(sign); });
}

void VideoPlayerManager::playFollowed(const std::string& sign) {
  rebuildPlaylist();
  if (!list.moveTo(sign) && !listWasRead) {
    testAvailabilityLater(sign);
    return;
  }
  following.reset();
  player().pause();
  if (services.preferences.isOpenPlayer.get() && services.preferences.isPlaying.get()) {
    playCurrent();
  } else {
    // It was closed or paused since; the video is the next to be seen.
    failedSigns.clear();
    syncWhenSearched = Sync::yes;
    loadPlayableNode();
  }
}

// The player keeps playing what it plays.
void VideoPlayerManager::deleteUnavailable(const std::string& sign) {
  services.console.log(LogLevel::warning, "video " + sign + " has no file; it is deleted from the library");
  const bool wasThere = services.library.video(sign).has_value();
  services.library.deleteVideo(sign);
  if (wasThere && services.library.allVideos().empty() && services.library.answered()) {
    services.preferences.setLibraryWasEmptied();
  }
  endFollowing();
}

// What was put off meanwhile is made up for.
void VideoPlayerManager::endFollowing() {
  if (following) {
    following.reset();
    if (std::exchange(syncsAfterFollowing, false)) {
      syncSign();
    }
  }
}

void VideoPlayerManager::changePlayModel(std::int64_t raw) {
  model = playModelFromRawValue(raw);
  updateVideoList();
  updateRepeating();
}

void VideoPlayerManager::syncSign() {
  if (search.isUnderWay()) {
    syncWhenSearched = Sync::yes;
    return;
  }
  if (following) {
    syncsAfterFollowing = true;
    return;
  }
  if (list.current() == nullptr && !listWasRead) {
    // The library could not be read, which says nothing about the video that is playing.
    return;
  }
  const auto sign = list.current() != nullptr ? std::optional(list.current()->val.sign) : std::nullopt;
  // A choice that is still to be followed is not overwritten.
  if (sign == services.preferences.playingVideoSign.get() || services.preferences.isAnotherVideoChosen()) {
    return;
  }
  if (!sign && services.preferences.libraryWasEmptied()) {
    services.preferences.forgetPlayingVideoSign();
  } else {
    services.preferences.playingVideoSign.set(sign);
  }
}

}  // namespace quilex
