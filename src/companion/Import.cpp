#include "companion/Import.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDate>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <system_error>
#include <utility>

#include "companion/Changes.h"
#include "companion/FileDigest.h"
#include "companion/MediaFile.h"
#include "companion/Text.h"
#include "library/FileURL.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace fs = std::filesystem;

namespace {

struct Imported {
  VideoLibrary::Addition how;
  VideoDetail video;
};

// The file's absolute path. Links to its folder are resolved, so that a file has the same path however it was given.
Result<fs::path> locate(const std::string& given) {
  std::error_code error;
  const fs::file_status status = fs::status(given, error);
  if (!fs::exists(status)) {
    return failed(status.type() == fs::file_type::not_found ? "there is no such file"
                                                            : "cannot be found: " + error.message());
  }
  if (!fs::is_regular_file(status)) {
    return failed(fs::is_directory(status) ? "is a folder, not a video file" : "is not a regular file");
  }
  const fs::path absolute = fs::absolute(given, error);
  fs::path folder = fs::canonical(absolute.parent_path(), error);
  if (access(given.c_str(), R_OK) != 0) {
    error = std::error_code(errno, std::generic_category());
  }
  if (error) {
    return failed("cannot be opened: " + error.message());
  }
  if (fs::file_size(given, error) == 0) {
    return failed("is empty");
  }
  return folder / absolute.filename();
}

/// Changes when the file is written.
struct FileState {
  std::uintmax_t size;
  fs::file_time_type written;
  bool operator==(const FileState&) const = default;
};

FileState stateOf(const fs::path& path) {
  std::error_code ignored;
  return {fs::file_size(path, ignored), fs::last_write_time(path, ignored)};
}

VideoDetail describe(const fs::path& path, std::uintmax_t size, const MediaFacts& facts, const std::string& digest) {
  VideoDetail video;
  video.sign = digest.substr(0, kSignLength);
  video.title = cleanText(path.stem().string());
  video.url = fileURL(path);
  video.time = std::llround(facts.seconds);
  video.size = static_cast<std::int64_t>(size);
  video.ratio = facts.ratio;
  video.width = facts.width;
  video.height = facts.height;
  video.frame = facts.frames;
  video.rate = std::llround(facts.framesPerSecond);
  video.audio = facts.hasSound ? 1 : 0;
  video.uptime = QDate::currentDate().toString(Qt::ISODate).toStdString();
  return video;
}

Result<Imported> importVideo(std::size_t index, const std::string& given, VideoLibrary& library,
                             ImportListener& listener) {
  const auto path = locate(given);
  if (!path) {
    return failed(path.error());
  }
  const FileState before = stateOf(*path);
  auto media = MediaFile::open(*path, [&listener] { return listener.isInterrupted(); });
  if (!media) {
    return failed(media.error());
  }
  const auto digest = fileDigest(*path, [&](std::uintmax_t bytes) {
    listener.reading(index, given, static_cast<unsigned>(bytes * 100 / before.size));
    return !listener.isInterrupted();
  });
  if (!digest) {
    return failed(digest.error());
  }
  const auto video = describe(*path, before.size, media->facts(), *digest);
  const auto makeCover = [&]() -> Result<std::string> {
    auto cover = media->cover();
    if (!(stateOf(*path) == before)) {
      return failed("was changed while it was read; import it again when it is complete");
    }
    return cover;
  };
  return library.add(video, makeCover).map([&](VideoLibrary::Addition how) { return Imported{how, video}; });
}

}  // namespace

Result<ImportCount> importVideos(const std::vector<std::string>& files, ImportListener& listener) {
  const auto opened = openUserFiles();
  if (!opened) {
    return failed(opened.error());
  }
  const auto before = opened->library->videos();
  if (!before) {
    return failed(before.error());
  }
  const auto current = valueInForce<std::string>(opened->settings->suite(), settings::kCurrentVideoSign);
  ImportCount count;
  std::string firstSign;
  for (std::size_t index = 0; index < files.size() && !listener.isInterrupted(); ++index) {
    const std::string& file = files[index];
    const auto imported = importVideo(index, file, *opened->library, listener);
    if (imported) {
      firstSign = firstSign.empty() ? imported->video.sign : firstSign;
      ++count.inLibrary;
      listener.imported(file, imported->video, imported->how);
    } else if (listener.isInterrupted()) {
      break;
    } else {
      ++count.refused;
      listener.refused(file, imported.error().message);
    }
  }
  count.wasInterrupted = count.inLibrary + count.refused < files.size();
  Outcome swept = opened->library->sweepCovers();
  if (!firstSign.empty()) {
    if (const auto announced = announceImport(*opened->settings, firstSign, *before, current); !announced) {
      return failed(announced.error());
    }
  }
  return swept.map([&] { return count; });
}

}  // namespace quilex
