#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "companion/VideoLibrary.h"

namespace quilex {

/// Follows an import, and may end it. Called on the thread that imports, with files as they were given.
class ImportListener {
 public:
  virtual ~ImportListener() = default;
  /// How much of the file at `index` has been read, in per cent.
  virtual void reading(std::size_t index, const std::string& file, unsigned percent) = 0;
  /// The video is in the library now, if it was not before.
  virtual void imported(const std::string& file, const VideoDetail& video, VideoLibrary::Addition how) = 0;
  /// `reason` is a clause that follows the name of the file.
  virtual void refused(const std::string& file, const std::string& reason) = 0;
  /// Whether the import should end; asked often.
  virtual bool isInterrupted() = 0;
};

/// What became of the files that were to be imported.
struct ImportCount {
  std::size_t inLibrary = 0;
  std::size_t refused = 0;
  bool wasInterrupted = false;
};

/// Adds the videos to the user's library one after the other, then notifies the agent. If no video of the library was
/// chosen before, the first of them is shown. What has been added stays when the import ends early.
Result<ImportCount> importVideos(const std::vector<std::string>& files, ImportListener& listener);

}  // namespace quilex
