// Rebuilds the playlist from libraries of many rows, and for comparison reads the same columns in a bare SQLite loop:
// playlist_bench. Prints for each number of rows "ROWS SECONDS REFERENCE_SECONDS", the medians of kRounds.

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "playback/VideoPlayerManager.h"
#include "support/Fakes.h"

namespace {

using namespace quilex;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 7;

// Rows as an import makes them, with texts of the usual lengths.
void makeLibrary(const std::string& file, int rows) {
  SQLite::Database database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  database.exec(
      "create table LocalVideos (vid integer, sign text, preurl text, title text, url text, description text, time "
      "integer, size integer, imgurl text, imgsize integer, tags text, ratio text, width integer, height integer, "
      "frame integer, rate integer, audio integer, uptime text, down integer, view integer, author text, avatar text, "
      "avatarsize integer, hp text, upcount integer)");
  database.exec(
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < " + std::to_string(rows) +
      ") insert into LocalVideos select i, printf('%032x', i), '', 'A walk by the sea ' || i, "
      "printf('file:///home/somebody/Videos/A%%20walk%%20by%%20the%%20sea%%20%d.mp4', i), '', 30, 15000000, "
      "printf('file:///home/somebody/.local/share/Covers/%032x.jpg', i), 40000, '', '16:9', 1920, 1080, 900, 30, 1, "
      "'2026-01-01 12:00:00', 0, 0, '', '', 0, '', 0 from n");
}

double seconds(const std::function<void()>& work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// The minimum for reading these rows: converts each column to its type and keeps nothing.
void bareLoop(sqlite3* database) {
  static constexpr std::array kIsText{false, true,  true, true,  true,  true,  false, false, true,
                                      false, true,  true, false, false, false, false, false, true,
                                      false, false, true, true,  false, true,  false};
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, "select * from LocalVideos", -1, &statement, nullptr);
  std::size_t sum = 0;
  while (sqlite3_step(statement) == SQLITE_ROW) {
    for (int column = 0; column < static_cast<int>(kIsText.size()); ++column) {
      if (kIsText[static_cast<std::size_t>(column)]) {
        sum += sqlite3_column_text(statement, column)[0];
        sum += static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
      } else {
        sum += static_cast<std::size_t>(sqlite3_column_int(statement, column));
      }
    }
  }
  sqlite3_finalize(statement);
  if (sum == 0) {
    std::fputs("nothing was read\n", stderr);
    std::exit(EXIT_FAILURE);
  }
}

void measure(int rows) {
  const test::TemporaryFolder folder;
  makeLibrary(folder / "Quilex.db", rows);
  test::FakeSettingsSuite suite;
  test::FakeRunLoop runLoop;
  test::FakeConsole console;
  test::FakeNotificationCenter center;
  test::FakeWindowServer windows;
  suite.values[Preferences::Key::currentVideoSign] = std::string("none of them");
  Preferences preferences(suite, runLoop);
  LocalVideoDBManager library(folder.path, std::nullopt, console);
  test::FakeFileFinder finder(runLoop);
  StatusReport report;
  VideoPlayerManager manager({preferences, suite, library, finder, windows, center, runLoop, console, nullptr,
                              [](std::size_t) { return std::size_t{0}; }, report});
  SQLite::Database bare(folder / "Quilex.db", SQLite::OPEN_READONLY | SQLite::OPEN_NOMUTEX);
  std::array<double, kRounds> ours;
  std::array<double, kRounds> reference;
  for (std::size_t round = 0; round < kRounds; ++round) {
    ours[round] = seconds([&] { manager.updateVideoList(); });
    reference[round] = seconds([&] { bareLoop(bare.getHandle()); });
  }
  std::ranges::sort(ours);
  std::ranges::sort(reference);
  if (manager.videoList().size() != static_cast<std::size_t>(rows)) {
    std::fputs("the playlist does not hold the library\n", stderr);
    std::exit(EXIT_FAILURE);
  }
  std::printf("%d %.6f %.6f\n", rows, ours[kRounds / 2], reference[kRounds / 2]);
}

}  // namespace

int main() try {
  for (const int rows : {10'000, 100'000}) {
    measure(rows);
  }
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return EXIT_FAILURE;
}
