#pragma once

#include <string>
#include <vector>

#include "companion/VideoLibrary.h"

namespace quilex {

/// What became of the files that were to be imported.
struct ImportCount {
  std::size_t inLibrary = 0;
  /// The sign of the first one that is; empty when none is.
  std::string firstSign;
  std::size_t refused = 0;
  bool wasInterrupted = false;
};

/// Adds the videos to the library one after the other. Writes a line to standard output for each that is in the library
/// afterwards, and one to standard error for each that is refused.
ImportCount importVideos(const std::vector<std::string>& files, VideoLibrary& library);

}  // namespace quilex
