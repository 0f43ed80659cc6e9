#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace quilex {

/// How a file of the user's is. Looking at it makes and changes nothing.
struct FileHealth {
  std::string path;
  bool exists = false;
  /// In bytes.
  std::uintmax_t size = 0;
  /// What is wrong with it, as the end of a sentence; empty when it is well or not there.
  std::string problem;
};

struct LibraryHealth : FileHealth {
  std::size_t videos = 0;
  /// The signs of the videos whose files are gone.
  std::vector<std::string> lostVideos;
};

/// Each takes a few seconds at most: a file on a disk that does not answer has that as its problem.
FileHealth checkSettings(const std::filesystem::path& file);
LibraryHealth checkLibrary(const std::filesystem::path& file);

}  // namespace quilex
