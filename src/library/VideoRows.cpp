#include "library/VideoRows.h"

#include <sqlite3.h>

#include <array>
#include <memory>
#include <tuple>

namespace quilex {

namespace {

constexpr std::size_t kFieldCount = std::tuple_size_v<decltype(VideoDetail::fields())>;
constexpr int kNoColumn = -1;

/// For each field of a video, the index of its column in a statement's result, or kNoColumn.
using ColumnMap = std::array<int, kFieldCount>;

struct StatementFinalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

/// A statement of SQLite itself. SQLiteCpp's columns count references for each value, which takes longer than reading
/// it.
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

// SQLite's 32-bit conversion (NULL is 0), widened with its sign.
void read(sqlite3_stmt* statement, int column, std::int64_t& value) {
  value = sqlite3_column_int(statement, column);
}

// SQLite's conversion to text, up to a NUL; SQL's NULL is "".
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

// At least the number of rows, to reserve memory once: the highest row number, which SQLite finds without a scan. 0 if
// that is too high to be plausible; a table whose rows were deleted may have far fewer.
std::size_t mostRows(sqlite3* db) {
  constexpr sqlite3_int64 kPlausible = 200'000;
  const StatementHandle statement = prepare(db, "select max(rowid) from LocalVideos");
  if (!statement || sqlite3_step(statement.get()) != SQLITE_ROW) {
    return 0;
  }
  const sqlite3_int64 highest = sqlite3_column_int64(statement.get(), 0);
  return highest > 0 && highest <= kPlausible ? static_cast<std::size_t>(highest) : 0;
}

}  // namespace

int queryVideos(sqlite3* db, const char* text, const std::string* argument, std::vector<VideoDetail>& videos) {
  const StatementHandle statement = prepare(db, text);
  if (!statement) {
    return sqlite3_errcode(db);
  }
  if (argument != nullptr) {
    sqlite3_bind_text(statement.get(), 1, argument->data(), static_cast<int>(argument->size()), SQLITE_STATIC);
  }
  if (argument == nullptr) {
    videos.reserve(mostRows(db));
  }
  const ColumnMap map = mapColumns(statement.get());
  int step = sqlite3_step(statement.get());
  for (; step == SQLITE_ROW; step = sqlite3_step(statement.get())) {
    readRow(statement.get(), map, videos.emplace_back());
  }
  return step;
}

}  // namespace quilex
