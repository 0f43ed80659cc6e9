#include "playback/PlayingSign.h"

#include <utility>

#include "base/FatalError.h"
#include "library/FileURL.h"

namespace quilex {

void PlayingSign::follow(const std::optional<std::string>& sign) {
  if (!sign) {
    fatalError("the sign of the playing video was removed");
  }
  following_.reset();
  syncsAfterFollowing_ = false;
  if (const VideoDetail* current = playlist_.current(); current != nullptr && current->sign == *sign) {
    return;
  }
  services_.console.log(LogLevel::info, "the settings name video " + *sign);
  mark_.allow(*sign);
  retryDelay_.reset();
  testAvailability(*sign);
}

void PlayingSign::testAvailability(const std::string& sign) {
  const auto video = services_.library.video(sign);
  if (!video) {
    // A library that cannot be read says nothing about the video.
    testAvailabilityLater(sign);
    return;
  }
  auto file = *video ? localPath((*video)->url) : std::nullopt;
  if (!file) {
    deleteUnavailable(sign);
    return;
  }
  following_ = services_.fileFinder.findFirst({std::move(*file)}, [this, sign](const FileFinder::Answer& answer) {
    if (answer.found) {
      play(sign);
    } else if (answer.someUnanswered) {
      endFollowing();
    } else {
      deleteUnavailable(sign);
    }
  });
}

void PlayingSign::testAvailabilityLater(const std::string& sign) {
  following_ = services_.runLoop.after(retryDelay_.next(), [this, sign] { testAvailability(sign); });
}

void PlayingSign::play(const std::string& sign) {
  const bool wasRead = playlist_.rebuild(Playlist::Current::named);
  if (!playlist_.moveTo(sign) && !wasRead) {
    testAvailabilityLater(sign);
    return;
  }
  following_.reset();
  playback_.player().pause();
  if (services_.preferences.isOpenPlayer.get() && services_.preferences.isPlaying.get()) {
    playback_.playCurrent();
  } else {
    // Closed or paused in the meantime; the video is shown when that ends.
    playback_.loadCurrent();
  }
}

// The player keeps playing its item.
void PlayingSign::deleteUnavailable(const std::string& sign) {
  services_.console.log(LogLevel::warning, "video " + sign + " has no file; it is deleted from the library");
  const auto video = services_.library.video(sign);
  services_.library.deleteVideo(sign);
  if (video && *video) {
    if (const auto left = services_.library.allVideos(); left && left->empty()) {
      services_.preferences.setLibraryWasEmptied();
    }
  }
  endFollowing();
}

void PlayingSign::endFollowing() {
  if (following_) {
    following_.reset();
    if (std::exchange(syncsAfterFollowing_, false)) {
      sync();
    }
  }
}

void PlayingSign::sync() {
  if (playlist_.isSearching()) {
    playback_.syncWhenSearched();
    return;
  }
  if (following_) {
    syncsAfterFollowing_ = true;
    return;
  }
  const VideoDetail* const current = playlist_.current();
  if (current == nullptr && !playlist_.wasRead()) {
    // An unreadable library says nothing about the video that is playing.
    return;
  }
  const auto sign = current != nullptr ? std::optional(current->sign) : std::nullopt;
  // Another process's choice that has not been read yet is not overwritten.
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
