#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/MainThread.h"
#include "base/Result.h"
#include "library/VideoDetail.h"
#include "platform/Console.h"

namespace SQLite {
class Database;
}

namespace quilex {

/// The agent's access to the database of imported videos, which the main application fills. Every operation is
/// synchronous and fails at once if another process holds a lock. If another database takes the place of the opened
/// one, the next operation uses it; while the file is missing, operations fail. Main thread.
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

  /// All videos in the order of the database; a failure if it does not answer.
  Result<std::vector<VideoDetail>> allVideos();
  /// The video with that sign, the last one if there are several, or nothing if there is none; a failure if the
  /// database does not answer.
  Result<std::optional<VideoDetail>> video(const std::string& sign);
  /// Deletes the videos with that sign and says on the console whether that worked.
  void deleteVideo(const std::string& sign);

 private:
  bool open(int creation);
  bool isUsable();
  Result<std::vector<VideoDetail>> query(const char* statementText, const std::string* argument);

  [[no_unique_address]] MainThread mainThread_;
  Console& console_;
  const std::string path_;
  /// Stays null if the database could not be opened at first.
  std::unique_ptr<SQLite::Database> db_;
};

}  // namespace quilex
