#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "companion/Result.h"
#include "library/VideoDetail.h"

namespace SQLite {
class Database;
}

namespace quilex {

/// Lower-case hexadecimal digits of a video's sign.
constexpr std::size_t kSignLength = 32;

/// The library of videos with the folder of their covers, as its only writer of rows sees it. A change is one
/// transaction: it is made whole or not at all, whenever the program ends. Waits for at most ten seconds for another
/// process's lock.
class VideoLibrary {
 public:
  /// The library in `supportDirectory`; where there is none, a copy of the template is put there first.
  static Result<std::unique_ptr<VideoLibrary>> open(const std::filesystem::path& supportDirectory,
                                                    const std::optional<std::filesystem::path>& templateFile);
  ~VideoLibrary();
  VideoLibrary(const VideoLibrary&) = delete;
  VideoLibrary& operator=(const VideoLibrary&) = delete;

  const std::filesystem::path& file() const { return path_; }
  Result<std::vector<VideoDetail>> videos();

  enum class Addition { added, moved, known };
  /// Adds a row for the video, numbered after all others, with the JPEG that `cover` makes as its cover. A library
  /// that has the sign already keeps its row, which is told the video's new place if its old file is gone.
  Result<Addition> add(VideoDetail video, const std::function<Result<std::string>()>& cover);

  /// What else belongs to a removal, run before it becomes lasting; its failure undoes the removal.
  using BeforeRemoval =
      std::function<Outcome(const std::vector<VideoDetail>& before, const std::vector<VideoDetail>& removed)>;
  /// Removes the rows of the videos that `names` stand for, or none if one of them is unknown. Answers those removed.
  Result<std::vector<VideoDetail>> remove(const std::vector<std::string>& names, const BeforeRemoval& beforeRemoval);

  /// Deletes covers without a row, as are left when a program is killed or another one deletes a row.
  Outcome sweepCovers();

 private:
  VideoLibrary(std::filesystem::path library, std::unique_ptr<SQLite::Database> database);
  std::vector<VideoDetail> query(const char* text, const std::string* argument);
  std::vector<VideoDetail> readAll();
  std::optional<VideoDetail> find(const std::string& sign);
  void insert(const VideoDetail& video);
  Outcome writeCover(VideoDetail& video, const std::string& jpeg) const;
  std::vector<std::filesystem::path> strayCovers();
  template <typename Value>
  Result<Value> guarded(const std::function<Result<Value>()>& work) const;

  std::filesystem::path path_;
  std::filesystem::path covers_;
  std::unique_ptr<SQLite::Database> db_;
};

/// The one video that `name` stands for: its sign, or the beginning of its sign, of four characters at least, that no
/// other sign has.
Result<VideoDetail> findVideo(const std::vector<VideoDetail>& videos, const std::string& name);

}  // namespace quilex
