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

// SQLite would wait for the other end of a FIFO at the library's place or at that of its journals.
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
    : console_(console), path_(libraryFile(supportDirectory)) {
  std::error_code ignored;
  if (!fs::exists(path_, ignored)) {
    if (!templateFile) {
      fatalError("the application bundle has no Quilex.db");
    }
    if (const Outcome placed = placeLibrary(*templateFile, path_); !placed) {
      console_.print(path_ + ": " + placed.error().message);
    }
  }
  console_.print(path_);
  const bool isNew = !fs::exists(path_, ignored);
  if (!open(SQLite::OPEN_CREATE)) {
    console_.print("db open failure");
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

// Whether there is a database to ask. If its file was replaced, the new one is opened; a missing one is not created.
bool LocalVideoDBManager::isUsable() {
  mainThread_.check();
  if (!db_) {
    return false;
  }
  int hasMoved = 0;
  sqlite3_file_control(db_->getHandle(), nullptr, SQLITE_FCNTL_HAS_MOVED, &hasMoved);
  return hasMoved != 0 ? open(0) : nothingToWaitFor(path_);
}

Result<std::vector<VideoDetail>> LocalVideoDBManager::query(const char* statementText, const std::string* argument) {
  // SQLite notices that another process has dropped the table and created it again only when a statement runs. A query
  // that is prepared before that would still use the old columns.
  if (!isUsable() || db_->tryExec("select 1 from sqlite_master limit 1") != SQLite::OK) {
    return failed("the library cannot be opened");
  }
  std::vector<VideoDetail> videos;
  if (const int code = queryVideos(db_->getHandle(), statementText, argument, videos); code != SQLITE_DONE) {
    return failed(sqlite3_errstr(code));
  }
  return videos;
}

Result<std::vector<VideoDetail>> LocalVideoDBManager::allVideos() {
  return query("select * from LocalVideos", nullptr);
}

Result<std::optional<VideoDetail>> LocalVideoDBManager::video(const std::string& sign) {
  return query("select * from LocalVideos where sign = ?", &sign).map([](std::vector<VideoDetail> videos) {
    return videos.empty() ? std::nullopt : std::optional(std::move(videos.back()));
  });
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
  console_.print("delete " + sign + (deleted ? " true" : " false"));
}

}  // namespace quilex
