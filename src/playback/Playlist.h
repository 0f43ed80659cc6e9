#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Disposable.h"
#include "base/MainThread.h"
#include "playback/PlayableSearch.h"
#include "playback/PlaybackServices.h"
#include "playback/RetryDelay.h"
#include "playback/VideoInfoList.h"
#include "playback/VideoPlayerPlayModel.h"

namespace quilex {

/// The library's videos in the order in which they are played, with a current one. Main thread.
class Playlist {
 public:
  /// Which video is current after a rebuild: the one that the settings name, or the first one if they name none of the
  /// list; or the one that was current, or the first after it that is still there.
  enum class Current { named, kept };

  /// Makes an empty list. `rebuilt` is called whenever the list has been filled again, `readAgain` from the run loop
  /// when a library that did not answer should be read again.
  Playlist(const PlaybackServices& services, std::function<void()> rebuilt, std::function<void()> readAgain);

  const VideoInfoList& list() const { return list_; }
  /// The current video; null if the list is empty.
  const VideoDetail* current() const { return list_.current(); }
  VideoPlayerPlayModel model() const { return model_; }
  /// The order of the videos follows with the next rebuild.
  void setModel(VideoPlayerPlayModel model) { model_ = model; }

  /// Fills the list from the library, shuffled if the model says so, and cancels the search. False if the library did
  /// not answer: then the list stays as it is, and `readAgain` is called later.
  bool rebuild(Current current);
  /// Whether the library answered the last rebuild.
  bool wasRead() const { return wasRead_; }

  /// Makes the video that comes next by the model current; a shuffled list is shuffled again at its end.
  void advance();
  /// Makes the first video with that sign current; false, and no move, if there is none.
  bool moveTo(const std::string& sign) { return list_.moveTo(sign); }

  /// Makes the first video that can be loaded current (see PlayableSearch).
  void search(PlayableSearch::PassesOver passesOver, PlayableSearch::Done done) {
    search_.start(std::move(passesOver), std::move(done));
  }
  bool isSearching() const { return search_.isUnderWay(); }

 private:
  std::vector<std::string> signsFromCurrent() const;

  [[no_unique_address]] MainThread mainThread_;
  const PlaybackServices& services_;
  std::function<void()> rebuilt_;
  std::function<void()> readAgain_;
  VideoPlayerPlayModel model_;
  VideoInfoList list_;
  /// Keeps rebuilds apart. They all run on the main thread, so nobody ever waits for it.
  std::mutex videoListLocker_;
  PlayableSearch search_;
  bool wasRead_ = true;
  RetryDelay retryDelay_;
  std::optional<Disposable> retry_;
};

}  // namespace quilex
