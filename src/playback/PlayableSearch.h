#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

#include "base/Disposable.h"
#include "platform/FileFinder.h"
#include "playback/VideoInfoList.h"

namespace quilex {

/// Moves the current position of a playlist to the first video, from the current one on, that can be loaded. Main
/// thread.
class PlayableSearch {
 public:
  /// Whether a video is skipped even if its file exists.
  using PassesOver = std::function<bool(const VideoDetail& video)>;
  /// Called with the path of the current video's file. If no video of the playlist can be loaded, called with nothing,
  /// and the current position has not moved.
  using Done = std::function<void(const std::optional<std::filesystem::path>& file)>;

  /// Both must outlive the search.
  PlayableSearch(VideoInfoList& list, FileFinder& fileFinder) : list_(list), fileFinder_(fileFinder) {}

  /// Looks once through the playlist; replaces a search that is under way. `done` is called from the run loop, or at
  /// once if there is no file to look for.
  void start(PassesOver passesOver, Done done);
  /// Ends the search without a call of `done`; to be called before the playlist changes.
  void cancel() { question_.reset(); }
  bool isUnderWay() const { return question_.has_value(); }

 private:
  /// Looks from the video that many steps after the current one.
  void lookFrom(std::size_t step);
  void finish(const std::optional<std::filesystem::path>& file);

  VideoInfoList& list_;
  FileFinder& fileFinder_;
  PassesOver passesOver_;
  Done done_;
  std::optional<Disposable> question_;
};

}  // namespace quilex
