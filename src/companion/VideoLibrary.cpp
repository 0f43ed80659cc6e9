#include "companion/VideoLibrary.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
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
  std::string columns = "rowid";
  std::string marks = "?";
  const auto addColumn = [&](const char* key) {
    columns.append(", \"").append(VideoDetail::columnFor(key)).append("\"");
    marks.append(", ?");
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

std::vector<VideoRow> VideoLibrary::rowsOf(const std::string& sign) {
  std::vector<VideoRow> rows;
  const auto videos = query("select * from LocalVideos where sign = ? order by rowid", &sign);
  SQLite::Statement places(*db_, "select rowid from LocalVideos where sign = ? order by rowid");
  places.bind(1, sign);
  rows.reserve(videos.size());
  for (const VideoDetail& video : videos) {
    rows.push_back({places.executeStep() ? places.getColumn(0).getInt64() : 0, video});
  }
  return rows;
}

void VideoLibrary::insert(const VideoDetail& video, std::optional<std::int64_t> place) {
  SQLite::Statement statement(*db_, insertStatement());
  int index = 1;
  if (place) {
    statement.bind(index, *place);
  }
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

Outcome VideoLibrary::remove(const std::vector<std::string>& names, const BeforeRemoval& beforeRemoval) {
  return guarded([&]() -> Outcome {
    SQLite::Transaction transaction(*db_, SQLite::TransactionBehavior::IMMEDIATE);
    const std::vector<VideoDetail> before = readAll();
    std::set<std::string> signs;
    std::vector<VideoRow> removed;
    for (const std::string& name : names) {
      auto video = findVideo(before, name);
      if (!video) {
        return failed(video.error());
      }
      if (signs.insert(video->sign).second) {
        std::ranges::move(rowsOf(video->sign), std::back_inserter(removed));
      }
    }
    for (const std::string& sign : signs) {
      SQLite::Statement statement(*db_, "delete from LocalVideos where sign = ?");
      statement.bind(1, sign);
      statement.exec();
    }
    if (auto allowed = beforeRemoval(before, removed); !allowed) {
      return allowed;
    }
    transaction.commit();
    return {};
  });
}

Outcome VideoLibrary::restore(const std::vector<VideoRow>& rows) {
  return guarded([&]() -> Outcome {
    SQLite::Transaction transaction(*db_, SQLite::TransactionBehavior::IMMEDIATE);
    std::set<std::string> present;
    for (const VideoDetail& video : readAll()) {
      present.insert(video.sign);
    }
    for (const VideoRow& row : rows) {
      if (present.contains(row.video.sign)) {
        continue;
      }
      SQLite::Statement taken(*db_, "select 1 from LocalVideos where rowid = ?");
      taken.bind(1, row.place);
      insert(row.video, taken.executeStep() ? std::nullopt : std::optional(row.place));
    }
    transaction.commit();
    return {};
  });
}

Outcome VideoLibrary::rename(const std::string& sign, const std::string& title) {
  return guarded([&]() -> Outcome {
    SQLite::Statement statement(*db_, "update LocalVideos set title = ? where sign = ?");
    statement.bind(1, title);
    statement.bind(2, sign);
    return statement.exec() > 0 ? Outcome() : failed("the video is not in the library any more");
  });
}

Outcome VideoLibrary::replaceCover(const std::string& sign, const std::string& jpeg) {
  return guarded([&]() -> Outcome {
    const SQLite::Transaction transaction(*db_, SQLite::TransactionBehavior::IMMEDIATE);
    std::optional<VideoDetail> video = find(sign);
    return video ? writeCover(*video, jpeg) : failed("the video is not in the library any more");
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
