#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

#include "base/Disposable.h"
#include "platform/FileFinder.h"
#include "playback/VideoInfoList.h"

namespace quilex {

/// Makes the first video of the playlist from the current one on that can be loaded the current one. Main thread.
class PlayableSearch {
 public:
  /// Whether a video is not to be loaded though its file exists.
  using PassesOver = std::function<bool(const VideoDetail& video)>;
  /// Called with the path of the current video's file; with nothing, and the current video where it was, when no video
  /// of the playlist can be loaded.
  using Done = std::function<void(const std::optional<std::filesystem::path>& file)>;

  /// Both must outlive the search.
  PlayableSearch(VideoInfoList& playlist, FileFinder& fileFinder, PassesOver passesOver, Done done);

  /// Looks once through the playlist; a search that is under way ends. `done` is called from the run loop, or at once
  /// if there is no file to look for. Before the playlist changes, the search has to be cancelled.
  void start();
  void cancel() { question_.reset(); }
  bool isUnderWay() const { return question_.has_value(); }

 private:
  void lookFrom(const VideoInfoNode* node, std::size_t distance);
  void finish(const std::optional<std::filesystem::path>& file);
  const VideoInfoNode* after(const VideoInfoNode* node) const { return node->next ? node->next.get() : list_.head(); }

  VideoInfoList& list_;
  FileFinder& finder_;
  PassesOver isPassedOver_;
  Done whenDone_;
  std::optional<Disposable> question_;
};

}  // namespace quilex
