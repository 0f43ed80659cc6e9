#include "companion/VideoLibrary.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <set>
#include <utility>

#include "base/PrivateFiles.h"
#include "library/FileURL.h"
#include "library/LibraryFile.h"
#include "library/VideoRows.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "platform/AppInfo.h"

namespace quilex {

namespace fs = std::filesystem;

namespace {

constexpr int kBusyTimeoutMilliseconds = 10'000;
constexpr std::size_t kShortestPrefix = 4;
constexpr const char* kCoverEnding = ".jpg";
constexpr const char* kUnfinishedEnding = ".jpg.new";

std::string insertStatement() {
  std::string columns;
  std::string marks;
  const auto addColumn = [&](const char* key) {
    const char* separator = columns.empty() ? "" : ", ";
    columns.append(separator).append("\"").append(VideoDetail::columnFor(key)).append("\"");
    marks.append(separator).append("?");
  };
  std::apply([&](const auto&... each) { (addColumn(each.key), ...); }, VideoDetail::fields());
  return "insert into LocalVideos (" + columns + ") values (" + marks + ")";
}

}  // namespace

VideoLibrary::VideoLibrary(fs::path file, std::unique_ptr<SQLite::Database> database)
    : path_(std::move(file)), covers_(path_.parent_path() / "Covers"), db_(std::move(database)) {}

VideoLibrary::~VideoLibrary() = default;

Result<std::unique_ptr<VideoLibrary>> VideoLibrary::open(const fs::path& supportDirectory,
                                                         const std::optional<fs::path>& templateFile) {
  const std::string file = libraryFile(supportDirectory);
  std::error_code ignored;
  if (!fs::exists(file, ignored)) {
    if (!templateFile) {
      return failed("there is no library at " + file + " yet, and the application bundle has no Quilex.db");
    }
    if (const Outcome placed = placeLibrary(*templateFile, file); !placed) {
      return failed("the library " + file + " cannot be made: " + placed.error().message);
    }
  }
  try {
    return std::unique_ptr<VideoLibrary>(new VideoLibrary(
        file, std::make_unique<SQLite::Database>(file, SQLite::OPEN_READWRITE, kBusyTimeoutMilliseconds)));
  } catch (const SQLite::Exception& error) {
    return failed("the library " + file + " cannot be opened: " + error.what());
  }
}

// Turns the database's exceptions into failures.
template <typename Work>
std::invoke_result_t<Work> VideoLibrary::guarded(const Work& work) const {
  try {
    return work();
  } catch (const SQLite::Exception& error) {
    const bool locked = error.getErrorCode() == SQLITE_BUSY || error.getErrorCode() == SQLITE_LOCKED;
    return failed("the library " + path_.string() + ": " +
                  (locked ? "another program keeps it locked" : std::string(error.what())));
  }
}

std::vector<VideoDetail> VideoLibrary::query(const char* text, const std::string* argument) {
  std::vector<VideoDetail> videos;
  if (const int code = queryVideos(db_->getHandle(), text, argument, videos); code != SQLITE_DONE) {
    throw SQLite::Exception(db_->getHandle(), code);
  }
  return videos;
}

std::vector<VideoDetail> VideoLibrary::readAll() {
  return query("select * from LocalVideos", nullptr);
}

std::optional<VideoDetail> VideoLibrary::find(const std::string& sign) {
  auto videos = query("select * from LocalVideos where sign = ?", &sign);
  return videos.empty() ? std::nullopt : std::optional(std::move(videos.back()));
}

Result<std::vector<VideoDetail>> VideoLibrary::videos() {
  return guarded([&]() -> Result<std::vector<VideoDetail>> { return readAll(); });
}

void VideoLibrary::insert(const VideoDetail& video) {
  SQLite::Statement statement(*db_, insertStatement());
  int index = 0;
  std::apply([&](const auto&... each) { (statement.bind(++index, video.*each.member), ...); }, VideoDetail::fields());
  statement.exec();
}

Result<VideoLibrary::Addition> VideoLibrary::add(VideoDetail video, const std::function<Result<std::string>()>& cover) {
  return guarded([&]() -> Result<Addition> {
    // A video that is known already is usually found here, without the lock and without making a cover.
    std::optional<VideoDetail> known = find(video.sign);
    std::string jpeg;
    if (!known) {
      auto made = cover();
      if (!made) {
        return failed(made.error());
      }
      jpeg = *std::move(made);
    } else if (namesExistingFile(known->url)) {
      return Addition::known;
    }
    SQLite::Transaction transaction(*db_, SQLite::TransactionBehavior::IMMEDIATE);
    known = find(video.sign);
    if (known && namesExistingFile(known->url)) {
      return Addition::known;
    }
    if (known) {
      SQLite::Statement statement(*db_, "update LocalVideos set url = ? where sign = ?");
      statement.bind(1, video.url);
      statement.bind(2, video.sign);
      statement.exec();
      transaction.commit();
      return Addition::moved;
    }
    if (const auto written = writeCover(video, jpeg); !written) {
      return failed(written.error());
    }
    try {
      video.id = db_->execAndGet("select coalesce(max(vid), 0) + 1 from LocalVideos").getInt64();
      insert(video);
      transaction.commit();
    } catch (const SQLite::Exception&) {
      // The lock is still held here; once it is released, the cover could be another process's.
      std::error_code ignored;
      fs::remove(covers_ / (video.sign + kCoverEnding), ignored);
      throw;
    }
    return Addition::added;
  });
}

// The cover appears complete or not at all. The caller holds the database's lock, so that only one process writes it.
Outcome VideoLibrary::writeCover(VideoDetail& video, const std::string& jpeg) const {
  const fs::path finished = covers_ / (video.sign + kCoverEnding);
  const fs::path unfinished = covers_ / (video.sign + kUnfinishedEnding);
  std::error_code error;
  createPrivateFolder(covers_);
  errno = 0;
  std::ofstream stream(unfinished, std::ios::binary | std::ios::trunc);
  if (stream) {
    fs::permissions(unfinished, kPrivateFile, error);
  }
  stream << jpeg;
  stream.close();
  if (!stream) {
    error = std::error_code(errno, std::generic_category());
  } else {
    fs::rename(unfinished, finished, error);
  }
  if (error || !stream) {
    std::error_code ignored;
    fs::remove(unfinished, ignored);
    return failed("the cover " + finished.string() + " cannot be written: " + error.message());
  }
  video.imgurl = fileURL(finished);
  video.imgsize = static_cast<std::int64_t>(jpeg.size());
  return {};
}

Result<std::vector<VideoDetail>> VideoLibrary::remove(const std::vector<std::string>& names,
                                                      const BeforeRemoval& beforeRemoval) {
  return guarded([&]() -> Result<std::vector<VideoDetail>> {
    SQLite::Transaction transaction(*db_, SQLite::TransactionBehavior::IMMEDIATE);
    const std::vector<VideoDetail> before = readAll();
    std::vector<VideoDetail> removed;
    for (const std::string& name : names) {
      auto video = findVideo(before, name);
      if (!video) {
        return failed(video.error());
      }
      if (std::ranges::find(removed, video->sign, &VideoDetail::sign) == removed.end()) {
        removed.push_back(*std::move(video));
      }
    }
    for (const VideoDetail& video : removed) {
      SQLite::Statement statement(*db_, "delete from LocalVideos where sign = ?");
      statement.bind(1, video.sign);
      statement.exec();
    }
    if (const auto allowed = beforeRemoval(before, removed); !allowed) {
      return failed(allowed.error());
    }
    transaction.commit();
    return removed;
  });
}

std::vector<fs::path> VideoLibrary::strayCovers() {
  std::set<std::string> signs;
  for (const VideoDetail& video : readAll()) {
    signs.insert(video.sign);
  }
  std::vector<fs::path> strays;
  std::error_code ignored;
  fs::directory_iterator entries(covers_, ignored);
  for (; entries != fs::directory_iterator(); entries.increment(ignored)) {
    const std::string name = entries->path().filename().string();
    const std::string sign = name.substr(0, kSignLength);
    const std::string ending = name.substr(sign.size());
    // Only the files that `writeCover` makes count.
    const bool isSign = sign.size() == kSignLength && sign.find_first_not_of("0123456789abcdef") == std::string::npos;
    if (isSign && (ending == kUnfinishedEnding || (ending == kCoverEnding && !signs.contains(sign)))) {
      strays.push_back(entries->path());
    }
  }
  return strays;
}

Outcome VideoLibrary::sweepCovers() {
  return guarded([&]() -> Outcome {
    if (!strayCovers().empty()) {
      // Under the lock no other process is between writing a cover and its row.
      const SQLite::Transaction transaction(*db_, SQLite::TransactionBehavior::IMMEDIATE);
      for (const fs::path& stray : strayCovers()) {
        std::error_code ignored;
        fs::remove(stray, ignored);
      }
    }
    return {};
  });
}

Result<std::unique_ptr<VideoLibrary>> openLibrary(MissingLibrary missing) {
  const LinuxBundle bundle = LinuxBundle::main();
  const auto templateFile = missing == MissingLibrary::placed ? bundle.resource("Quilex", "db") : std::nullopt;
  return VideoLibrary::open(AppInfo(bundle.environment()).urls().applicationSupport(), templateFile);
}

Result<std::vector<VideoDetail>> readLibrary(MissingLibrary missing) {
  return openLibrary(missing).and_then([](const auto& library) { return library->videos(); });
}

Result<VideoDetail> findVideo(const std::vector<VideoDetail>& videos, const std::string& name) {
  std::set<std::string> matches;
  const VideoDetail* found = nullptr;
  for (const VideoDetail& video : videos) {
    if (video.sign == name) {
      // If several rows have the sign, the last one counts, as for the agent.
      found = &video;
      matches = {name};
    } else if (name.size() >= kShortestPrefix && video.sign.starts_with(name) && !matches.contains(name)) {
      found = &video;
      matches.insert(video.sign);
    }
  }
  if (matches.size() > 1) {
    std::string list;
    for (const std::string& sign : matches) {
      list += (list.empty() ? "" : ", ") + sign;
    }
    return failed("\"" + name + "\" begins the signs of several videos: " + list);
  }
  if (found == nullptr) {
    const bool tooShort = name.size() < kShortestPrefix;
    return failed("no video in the library has the sign \"" + name + "\"" +
                  (tooShort ? "; the beginning of a sign needs 4 characters" : ""));
  }
  return *found;
}

}  // namespace quilex
