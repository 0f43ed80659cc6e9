#include "companion/Health.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "library/FileURL.h"
#include "library/VideoRows.h"
#include "linux/session/settings/SettingsFile.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds kPatience{5};
constexpr int kLibraryPatienceMilliseconds = 2000;

// Runs `work` in a thread of its own, which is left behind if the file system does not answer in time.
template <typename Health>
Health inTime(const fs::path& file, std::function<void(Health&)> work) {
  Health health;
  health.path = file.string();
  std::packaged_task<Health()> task([health, work = std::move(work)]() mutable {
    work(health);
    return health;
  });
  auto result = task.get_future();
  std::thread(std::move(task)).detach();
  if (result.wait_for(kPatience) == std::future_status::ready) {
    return result.get();
  }
  health.exists = true;
  health.problem = "does not answer";
  return health;
}

// True if there is a regular file, whose contents can be checked.
bool look(FileHealth& health) {
  std::error_code error;
  const fs::file_status status = fs::status(health.path, error);
  health.exists = status.type() != fs::file_type::not_found;
  if (!health.exists) {
    return false;
  }
  if (status.type() == fs::file_type::regular) {
    health.size = fs::file_size(health.path, error);
  } else {
    health.problem = error ? "cannot be looked at: " + error.message() : "is not a regular file";
  }
  return health.problem.empty();
}

void readLibrary(LibraryHealth& health) {
  try {
    SQLite::Database database(health.path, SQLite::OPEN_READONLY, kLibraryPatienceMilliseconds);
    const std::string found = database.execAndGet("pragma quick_check(1)").getString();
    if (found != "ok") {
      health.problem = "is damaged: " + found;
    }
    std::vector<VideoDetail> videos;
    const int code = queryVideos(database.getHandle(), "select * from LocalVideos", nullptr, videos);
    if (code != SQLITE_DONE) {
      throw SQLite::Exception(database.getHandle(), code);
    }
    health.videos = videos.size();
    for (const VideoDetail& video : videos) {
      if (!namesExistingFile(video.url)) {
        health.lostVideos.push_back(video.sign);
      }
    }
  } catch (const SQLite::Exception& error) {
    health.problem = std::string("cannot be read: ") + error.what();
  }
}

}  // namespace

FileHealth checkSettings(const fs::path& file) {
  return inTime<FileHealth>(file, [](FileHealth& health) {
    if (look(health)) {
      const auto object = SettingsFile(health.path).read().object;
      health.problem = object ? "" : object.error().message;
    }
  });
}

LibraryHealth checkLibrary(const fs::path& file) {
  return inTime<LibraryHealth>(file, [](LibraryHealth& health) {
    if (look(health)) {
      readLibrary(health);
    }
  });
}

}  // namespace quilex
