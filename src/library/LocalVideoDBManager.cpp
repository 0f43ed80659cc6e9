#include "library/LocalVideoDBManager.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <array>
#include <system_error>
#include <tuple>
#include <utility>

#include "app/FatalError.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;

constexpr int kBusyTimeoutMilliseconds = 2000;
constexpr std::size_t kFieldCount = std::tuple_size_v<decltype(VideoDetail::fields())>;
constexpr int kNoColumn = -1;

/// For each field of a video, the index of its column in a statement's result, or kNoColumn.
using ColumnMap = std::array<int, kFieldCount>;

// Copies under another name first, so that a copy cut short is never taken for a database, and never replaces a
// database that another process has put there meanwhile.
std::error_code placeCopy(const fs::path& from, const fs::path& to) {
  fs::path unfinished = to;
  unfinished += ".new";
  std::error_code error;
  fs::copy_file(from, unfinished, fs::copy_options::overwrite_existing, error);
  if (!error) {
    fs::permissions(unfinished, fs::perms::owner_write, fs::perm_options::add, error);
    fs::create_hard_link(unfinished, to, error);
    if (error == std::errc::file_exists) {
      error.clear();
    } else if (error) {
      // No hard links on this file system.
      fs::rename(unfinished, to, error);
    }
  }
  std::error_code ignored;
  fs::remove(unfinished, ignored);
  return error;
}

struct StatementFinalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

/// Owns a statement of SQLite itself: the wrapper's columns count references for each value that is read, which takes
/// longer than the reading.
using StatementHandle = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

StatementHandle prepare(sqlite3* db, const char* text) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(db, text, -1, &statement, nullptr);
  return StatementHandle(statement);
}

ColumnMap mapColumns(sqlite3_stmt* statement) {
  ColumnMap map;
  map.fill(kNoColumn);
  std::size_t field = 0;
  const auto find = [&](const char* key) {
    const std::string wanted = VideoDetail::columnFor(key);
    for (int column = 0; column < sqlite3_column_count(statement); ++column) {
      if (sqlite3_stricmp(sqlite3_column_name(statement, column), wanted.c_str()) == 0) {
        map[field] = column;
      }
    }
    ++field;
  };
  std::apply([&](const auto&... each) { (find(each.key), ...); }, VideoDetail::fields());
  return map;
}

// Integers as SQLite's own 32-bit conversion gives them (NULL is 0), widened with their sign.
void read(sqlite3_stmt* statement, int column, std::int64_t& value) {
  value = sqlite3_column_int(statement, column);
}

// Text as SQLite's own conversion gives it, up to a NUL; SQL's NULL is "".
void read(sqlite3_stmt* statement, int column, std::string& value) {
  if (const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column))) {
    value = text;
  }
}

void readRow(sqlite3_stmt* statement, const ColumnMap& map, VideoDetail& video) {
  std::size_t field = 0;
  const auto readField = [&](auto& member) {
    if (const int column = map[field++]; column != kNoColumn) {
      read(statement, column, member);
    }
  };
  std::apply([&](const auto&... each) { (readField(video.*each.member), ...); }, VideoDetail::fields());
}

}  // namespace

LocalVideoDBManager::LocalVideoDBManager(const fs::path& supportDirectory, const std::optional<fs::path>& templateFile,
                                         Console& console)
    : output(console) {
  const std::string path = supportDirectory.string() + "/Quilex.db";
  std::error_code ignored;
  if (!fs::exists(path, ignored)) {
    if (!templateFile) {
      fatalError("the application bundle has no Quilex.db");
    }
    if (const std::error_code error = placeCopy(*templateFile, path)) {
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
  const StatementHandle statement = prepare(db->getHandle(), statementText);
  if (!statement) {
    return videos;
  }
  if (argument != nullptr) {
    sqlite3_bind_text(statement.get(), 1, argument->data(), static_cast<int>(argument->size()), SQLITE_STATIC);
  }
  const ColumnMap map = mapColumns(statement.get());
  int step = sqlite3_step(statement.get());
  for (; step == SQLITE_ROW; step = sqlite3_step(statement.get())) {
    readRow(statement.get(), map, videos.emplace_back());
  }
  // The rows read before a failure stand.
  lastQueryAnswered = step == SQLITE_DONE;
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
