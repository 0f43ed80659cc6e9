#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Disposable.h"
#include "library/LocalVideoDBManager.h"
#include "platform/Console.h"
#include "platform/FileFinder.h"
#include "platform/RandomSource.h"
#include "platform/RunLoop.h"
#include "platform/StatusReport.h"
#include "playback/PlayableSearch.h"
#include "playback/RetryDelay.h"
#include "playback/VideoInfoList.h"
#include "playback/VideoPlayerPlayModel.h"
#include "settings/Preferences.h"

namespace quilex {

/// The library's videos in the order in which they are played, with a current one. Main thread.
class Playlist {
 public:
  struct Services {
    const Preferences& preferences;
    LocalVideoDBManager& library;
    FileFinder& fileFinder;
    RunLoop& runLoop;
    Console& console;
    UniformRandom random;
    StatusReport& report;
    /// Called whenever the list has been filled again.
    std::function<void()> rebuilt;
    /// Called from the run loop when a library that did not answer should be read again.
    std::function<void()> readAgain;
  };
  /// Which video is current after a rebuild: the one that the settings name, or the first one if they name none of the
  /// list; or the one that was current, or the first after it that is still there.
  enum class Current { named, kept };

  /// Makes an empty list.
  explicit Playlist(Services services);

  const VideoInfoList& list() const { return list_; }
  /// The current video; null if the list is empty.
  const VideoDetail* current() const { return list_.current() != nullptr ? &list_.current()->val : nullptr; }
  VideoPlayerPlayModel model() const { return model_; }
  /// Takes effect with the next rebuild.
  void setModel(VideoPlayerPlayModel model) { model_ = model; }

  /// Fills the list from the library, shuffled if the model says so, and cancels the search. False if the library did
  /// not answer: then the list stays as it is, and `readAgain` is called later.
  bool rebuild(Current current);
  /// Whether the library answered the last rebuild.
  bool wasRead() const { return wasRead_; }

  /// Makes the video current that the model lets follow; a shuffled list is shuffled again at its end.
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

  Services services_;
  VideoPlayerPlayModel model_;
  VideoInfoList list_;
  /// Held by a rebuild. All rebuilds run on the main thread, so that nobody ever waits for it.
  std::mutex videoListLocker_;
  PlayableSearch search_;
  bool wasRead_ = true;
  RetryDelay retryDelay_;
  std::optional<Disposable> retry_;
};

}  // namespace quilex
