#include "library/LocalVideoDBManager.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <system_error>
#include <utility>

#include "app/FatalError.h"
#include "app/PrivateFiles.h"
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
    struct stat status = {};
    if (stat((path + ending).c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
      return false;
    }
  }
  return true;
}

}  // namespace

LocalVideoDBManager::LocalVideoDBManager(const fs::path& supportDirectory, const std::optional<fs::path>& templateFile,
                                         Console& console)
    : output(console), path(libraryFile(supportDirectory)) {
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
  const bool isNew = !fs::exists(path, ignored);
  if (!open(SQLite::OPEN_CREATE)) {
    output.print("db open failure");
  } else if (isNew) {
    fs::permissions(path, kPrivateFile, ignored);
  }
}

LocalVideoDBManager::~LocalVideoDBManager() = default;

std::optional<LocalVideoDBManager::FileIdentity> LocalVideoDBManager::fileAtPath() const {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 ? std::optional(FileIdentity{status.st_dev, status.st_ino}) : std::nullopt;
}

bool LocalVideoDBManager::open(int creation) {
  // Looked at before the file is opened: one that is put in its place in between is opened once more then.
  const auto file = fileAtPath();
  if (!nothingToWaitFor(path)) {
    return false;
  }
  try {
    db = std::make_unique<SQLite::Database>(path, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX | creation,
                                            kBusyTimeoutMilliseconds);
  } catch (const SQLite::Exception&) {
    return false;
  }
  openedFile = file;
  return true;
}

// Whether there is a database to ask. One that was replaced since it was opened is opened again, but never created.
bool LocalVideoDBManager::isUsable() {
  if (!db) {
    return false;
  }
  const auto file = fileAtPath();
  return file && (file == openedFile ? nothingToWaitFor(path) : open(0));
}

std::vector<VideoDetail> LocalVideoDBManager::query(const char* statementText, const std::string* argument) {
  std::vector<VideoDetail> videos;
  lastQueryAnswered = false;
  // Running any statement makes SQLite notice a table that has been made anew; preparing one does not, and its columns
  // would be those of the old table.
  if (!isUsable() || db->tryExec("select 1 from sqlite_master limit 1") != SQLite::OK) {
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
  if (isUsable()) {
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
