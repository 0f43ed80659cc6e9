#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace quilex {

/// The state of one of the user's files. Checking it changes nothing.
struct FileHealth {
  std::string path;
  bool exists = false;
  /// In bytes.
  std::uintmax_t size = 0;
  /// What is wrong with it, as the end of a sentence; empty if nothing is, or there is no file.
  std::string problem;
};

struct LibraryHealth : FileHealth {
  std::size_t videos = 0;
  /// The signs of the videos whose files are gone.
  std::vector<std::string> lostVideos;
};

/// Each takes a few seconds at most; if the disk does not answer by then, `problem` says so.
FileHealth checkSettings(const std::filesystem::path& file);
LibraryHealth checkLibrary(const std::filesystem::path& file);

}  // namespace quilex
