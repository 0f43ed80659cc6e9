#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/VideoDetail.h"
#include "platform/Console.h"

namespace SQLite {
class Database;
}

namespace quilex {

/// The agent's access to the database of imported videos, which the main application fills. Every operation is
/// synchronous, fails at once where another process holds a lock, and raises no error. A database that was put in the
/// place of the opened one is seen by the next operation; while its file is missing, operations fail. Not for use from
/// two threads.
class LocalVideoDBManager {
 public:
  /// Puts a copy of the template into `supportDirectory` if there is no database yet, then opens the database. Without
  /// a database and without a template (a packaging fault) the process stops. `console` must outlive the instance.
  LocalVideoDBManager(const std::filesystem::path& supportDirectory,
                      const std::optional<std::filesystem::path>& templateFile, Console& console);
  ~LocalVideoDBManager();
  LocalVideoDBManager(const LocalVideoDBManager&) = delete;
  LocalVideoDBManager& operator=(const LocalVideoDBManager&) = delete;

  /// The instance of this process.
  static LocalVideoDBManager& shared();

  /// All videos in the order of the database; empty when the query fails.
  std::vector<VideoDetail> allVideos();
  /// The video with that sign, the last one if there are several; nothing when there is none or the query fails.
  std::optional<VideoDetail> video(const std::string& sign);
  /// Deletes the videos with that sign and says on the console whether that worked.
  void deleteVideo(const std::string& sign);

  /// Whether the database answered the last query; tells an empty library from one that could not be read.
  bool answered() const { return lastQueryAnswered_; }

 private:
  bool open(int creation);
  bool isUsable();
  std::vector<VideoDetail> query(const char* statementText, const std::string* argument);

  Console& output_;
  const std::string path_;
  /// Empty for good when the database could not be opened at first.
  std::unique_ptr<SQLite::Database> db_;
  bool lastQueryAnswered_ = true;
};

}  // namespace quilex
