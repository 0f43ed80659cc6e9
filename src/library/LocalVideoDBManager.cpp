#include "library/LocalVideoDBManager.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <system_error>
#include <utility>

#include "base/FatalError.h"
#include "base/PrivateFiles.h"
#include "library/LibraryFile.h"
#include "library/VideoRows.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;

// Another process's lock is not waited for.
constexpr int kBusyTimeoutMilliseconds = 0;

// SQLite would wait for the other end of a FIFO, be it the library or what it takes for the library's journal.
bool nothingToWaitFor(const std::string& path) {
  for (const char* ending : {"", "-journal", "-wal", "-shm"}) {
    std::error_code ignored;
    const fs::file_status status = fs::status(path + ending, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
      return false;
    }
  }
  return true;
}

}  // namespace

LocalVideoDBManager::LocalVideoDBManager(const fs::path& supportDirectory, const std::optional<fs::path>& templateFile,
                                         Console& console)
    : output_(console), path_(libraryFile(supportDirectory)) {
  std::error_code ignored;
  if (!fs::exists(path_, ignored)) {
    if (!templateFile) {
      fatalError("the application bundle has no Quilex.db");
    }
    if (const std::error_code error = placeLibrary(*templateFile, path_)) {
      output_.print(path_ + ": " + error.message());
    }
  }
  output_.print(path_);
  const bool isNew = !fs::exists(path_, ignored);
  if (!open(SQLite::OPEN_CREATE)) {
    output_.print("db open failure");
  } else if (isNew) {
    fs::permissions(path_, kPrivateFile, ignored);
  }
}

LocalVideoDBManager::~LocalVideoDBManager() = default;

bool LocalVideoDBManager::open(int creation) {
  if (!nothingToWaitFor(path_)) {
    return false;
  }
  try {
    db_ = std::make_unique<SQLite::Database>(path_, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX | creation,
                                             kBusyTimeoutMilliseconds);
  } catch (const SQLite::Exception&) {
    return false;
  }
  return true;
}

// Whether there is a database to ask. One that was replaced since it was opened is opened again, but never created.
bool LocalVideoDBManager::isUsable() {
  if (!db_) {
    return false;
  }
  int hasMoved = 0;
  sqlite3_file_control(db_->getHandle(), nullptr, SQLITE_FCNTL_HAS_MOVED, &hasMoved);
  return hasMoved != 0 ? open(0) : nothingToWaitFor(path_);
}

std::vector<VideoDetail> LocalVideoDBManager::query(const char* statementText, const std::string* argument) {
  std::vector<VideoDetail> videos;
  lastQueryAnswered_ = false;
  // Running any statement makes SQLite notice a table that has been made anew; preparing one does not, and its columns
  // would be those of the old table.
  if (!isUsable() || db_->tryExec("select 1 from sqlite_master limit 1") != SQLite::OK) {
    return videos;
  }
  // The rows read before a failure stand.
  lastQueryAnswered_ = queryVideos(db_->getHandle(), statementText, argument, videos) == SQLITE_DONE;
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
  if (isUsable()) {
    try {
      SQLite::Statement statement(*db_, "delete from LocalVideos where sign = ?");
      statement.bind(1, sign);
      statement.exec();
      deleted = true;
    } catch (const SQLite::Exception&) {
    }
  }
  output_.print("delete " + sign + (deleted ? " true" : " false"));
}

}  // namespace quilex
