#include "library/LocalVideoDBManager.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <system_error>
#include <utility>

#include "app/FatalError.h"
#include "library/LibraryFile.h"
#include "library/VideoRows.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;

constexpr int kBusyTimeoutMilliseconds = 2000;

}  // namespace

LocalVideoDBManager::LocalVideoDBManager(const fs::path& supportDirectory, const std::optional<fs::path>& templateFile,
                                         Console& console)
    : output(console) {
  const std::string path = libraryFile(supportDirectory);
  std::error_code ignored;
  if (!fs::exists(path, ignored)) {
    if (!templateFile) {
      fatalError("the application bundle has no Quilex.db");
    }
    if (const std::error_code error = placeLibrary(*templateFile, path)) {
      output.print(path + ": " + error.message());
    }
  }
  output.print(path);
  try {
    db = std::make_unique<SQLite::Database>(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX,
                                            kBusyTimeoutMilliseconds);
  } catch (const SQLite::Exception&) {
    output.print("db open failure");
  }
}

LocalVideoDBManager::~LocalVideoDBManager() = default;

std::vector<VideoDetail> LocalVideoDBManager::query(const char* statementText, const std::string* argument) {
  std::vector<VideoDetail> videos;
  lastQueryAnswered = false;
  // Running any statement makes SQLite notice a table that has been made anew; preparing one does not, and its columns
  // would be those of the old table.
  if (!db || db->tryExec("select 1 from sqlite_master limit 1") != SQLite::OK) {
    return videos;
  }
  // The rows read before a failure stand.
  lastQueryAnswered = queryVideos(db->getHandle(), statementText, argument, videos) == SQLITE_DONE;
  return videos;
}

std::vector<VideoDetail> LocalVideoDBManager::allVideos() {
  return query("select * from LocalVideos", nullptr);
}

std::optional<VideoDetail> LocalVideoDBManager::video(const std::string& sign) {
  auto videos = query("select * from LocalVideos where sign = ?", &sign);
  if (videos.empty()) {
    return std::nullopt;
  }
  return std::move(videos.back());
}

void LocalVideoDBManager::deleteVideo(const std::string& sign) {
  bool deleted = false;
  if (db) {
    try {
      SQLite::Statement statement(*db, "delete from LocalVideos where sign = ?");
      statement.bind(1, sign);
      statement.exec();
      deleted = true;
    } catch (const SQLite::Exception&) {
    }
  }
  output.print("delete " + sign + (deleted ? " true" : " false"));
}

}  // namespace quilex
