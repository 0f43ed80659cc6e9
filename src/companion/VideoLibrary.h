#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Result.h"
#include "library/VideoDetail.h"

namespace SQLite {
class Database;
}

namespace quilex {

/// Lower-case hexadecimal digits of a video's sign.
constexpr std::size_t kSignLength = 32;

/// A row of the library, with its place in the order of the table.
struct VideoRow {
  std::int64_t place = 0;
  VideoDetail video;
};

/// The library of videos with the folder of their covers, for this program, which alone adds and changes rows. Each
/// change is one transaction: it is made completely or not at all, even if the program ends in the middle. Waits for
/// another process's lock for ten seconds at most.
class VideoLibrary {
 public:
  /// The library in `supportDirectory`. If there is none, a copy of the template is put there first.
  static Result<std::unique_ptr<VideoLibrary>> open(const std::filesystem::path& supportDirectory,
                                                    const std::optional<std::filesystem::path>& templateFile);
  ~VideoLibrary();
  VideoLibrary(const VideoLibrary&) = delete;
  VideoLibrary& operator=(const VideoLibrary&) = delete;

  const std::filesystem::path& file() const { return path_; }
  Result<std::vector<VideoDetail>> videos();

  enum class Addition { added, moved, known };
  /// Adds a row for the video, numbered after all others, with the JPEG that `cover` makes as its cover. If the library
  /// already has the sign, its row stays, with the video's new path if the old file is gone.
  Result<Addition> add(VideoDetail video, const std::function<Result<std::string>()>& cover);

  /// Runs before a removal is committed; its failure undoes the removal.
  using BeforeRemoval =
      std::function<Outcome(const std::vector<VideoDetail>& before, const std::vector<VideoRow>& removed)>;
  /// Removes the rows of the videos that `names` stand for, or none if one of them is unknown.
  Outcome remove(const std::vector<std::string>& names, const BeforeRemoval& beforeRemoval);
  /// Puts removed rows back in their places, or behind all others where a place is taken. Videos that are in the
  /// library again stay as they are.
  Outcome restore(const std::vector<VideoRow>& rows);
  /// Fails if no video has the sign.
  Outcome rename(const std::string& sign, const std::string& title);
  /// Writes a cover, a JPEG, for a video that has lost its own.
  Outcome replaceCover(const std::string& sign, const std::string& jpeg);

  /// Deletes covers without a row. They remain when a program is killed, or another one deletes a row.
  Outcome sweepCovers();

 private:
  VideoLibrary(std::filesystem::path file, std::unique_ptr<SQLite::Database> database);
  std::vector<VideoDetail> query(const char* text, const std::string* argument);
  std::vector<VideoDetail> readAll();
  std::optional<VideoDetail> find(const std::string& sign);
  std::vector<VideoRow> rowsOf(const std::string& sign);
  /// Without a place, behind all others.
  void insert(const VideoDetail& video, std::optional<std::int64_t> place = std::nullopt);
  Outcome writeCover(VideoDetail& video, const std::string& jpeg) const;
  std::vector<std::filesystem::path> strayCovers();
  template <typename Work>
  std::invoke_result_t<Work> guarded(const Work& work) const;

  std::filesystem::path path_;
  std::filesystem::path covers_;
  std::unique_ptr<SQLite::Database> db_;
};

/// What is done about a library that is missing: the bundle's template is copied first, or opening fails.
enum class MissingLibrary { placed, left };

/// The user's library.
Result<std::unique_ptr<VideoLibrary>> openLibrary(MissingLibrary missing = MissingLibrary::placed);
/// All videos of the user's library.
Result<std::vector<VideoDetail>> readLibrary(MissingLibrary missing = MissingLibrary::placed);

/// The one video that `name` stands for: its sign, or four or more characters that only its sign begins with.
Result<VideoDetail> findVideo(const std::vector<VideoDetail>& videos, const std::string& name);

}  // namespace quilex
