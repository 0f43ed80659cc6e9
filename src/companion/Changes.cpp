#include "companion/Changes.h"

#include <algorithm>
#include <random>
#include <utility>

#include "companion/MediaFile.h"
#include "companion/Text.h"
#include "library/FileURL.h"
#include "linux/session/autostart/AutostartEntry.h"
#include "linux/session/dbus/DBusNotificationCenter.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using Videos = std::vector<VideoDetail>;

constexpr std::int64_t kShuffle = 2;

void postLibraryChange() {
  DBusNotificationCenter().post("UpdateVideoList");
}

bool hasVideo(const Videos& videos, const std::string& sign) {
  return std::ranges::find(videos, sign, &VideoDetail::sign) != videos.end();
}

bool hasRow(const std::vector<VideoRow>& rows, const std::string& sign) {
  return std::ranges::any_of(rows, [&](const VideoRow& row) { return row.video.sign == sign; });
}

std::size_t placeOf(const Videos& videos, const std::string& sign) {
  return static_cast<std::size_t>(std::ranges::find(videos, sign, &VideoDetail::sign) - videos.begin());
}

// The next video after `place` that remains and whose file exists; the last one is followed by the first.
const VideoDetail* nextPlayable(const Videos& videos, std::size_t place, const std::vector<VideoRow>& removed) {
  for (std::size_t step = 1; step < videos.size(); ++step) {
    const VideoDetail& video = videos[(place + step) % videos.size()];
    if (!hasRow(removed, video.sign) && namesExistingFile(video.url)) {
      return &video;
    }
  }
  return nullptr;
}

void show(SettingsSuite& suite, const std::string& sign) {
  suite.setString(settings::kCurrentVideoSign, sign);
  suite.setBoolean(settings::kIsOpenPlayer, true);
  suite.setBoolean(settings::kIsPlaying, true);
}

Result<VideoDetail> play(const VideoDetail& video) {
  if (!namesExistingFile(video.url)) {
    return failed("the file of " + titleLine(video) + " is gone: " + video.url);
  }
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  show((*settings)->suite(), video.sign);
  const auto wasRefused = (*settings)->allowVideo(video.sign);
  if (!wasRefused) {
    return failed(wasRefused.error());
  }
  if (const auto written = (*settings)->write(); !written) {
    return failed(written.error());
  }
  if (*wasRefused) {
    // The agent may be waiting for this video, and the settings may be the same as before.
    postLibraryChange();
  }
  return video;
}

// Moves the wallpaper off the videos that are being removed: to the next one, or, if none is left, by closing it. A
// wallpaper that is closed keeps its video, because naming another one would open it.
Outcome leaveRemoved(Settings& settings, const Videos& before, Removal& removal) {
  SettingsSuite& suite = settings.suite();
  removal.previousSign = valueInForce<std::string>(suite, settings::kCurrentVideoSign);
  const bool losesAll =
      std::ranges::all_of(before, [&](const VideoDetail& video) { return hasRow(removal.rows, video.sign); });
  if (losesAll) {
    suite.setBoolean(settings::kLibraryWasEmptied, true);
  }
  if ((losesAll || hasRow(removal.rows, removal.previousSign)) && valueInForce<bool>(suite, settings::kIsOpenPlayer)) {
    if (const auto* next = nextPlayable(before, placeOf(before, removal.previousSign), removal.rows)) {
      removal.nextSign = next->sign;
      suite.setString(settings::kCurrentVideoSign, next->sign);
    } else {
      removal.closedWallpaper = true;
      suite.setBoolean(settings::kIsOpenPlayer, false);
    }
  }
  return settings.write();
}

void remakeMissingCovers(VideoLibrary& library, const Removal& removal) {
  for (const VideoRow& row : removal.rows) {
    const auto file = localPath(row.video.url);
    if (row.video.imgurl.empty() || namesExistingFile(row.video.imgurl) || !file) {
      continue;
    }
    // The list shows a placeholder for a video without a cover.
    auto media = MediaFile::open(*file, [] { return false; });
    if (const auto cover = media ? media->cover() : failed("")) {
      static_cast<void>(library.replaceCover(row.video.sign, *cover));
    }
  }
}

// A running agent does the same when the setting changes.
Result<std::string> setStartsAtLogin(bool starts) {
  return AutostartEntry::main().set(starts).map([](const AutostartEntry::Change& change) {
    return change.state == AutostartEntry::Change::State::done ? std::string() : change.message;
  });
}

}  // namespace

std::string titleLine(const VideoDetail& video) {
  return cleanText(video.sign + "  " + video.title);
}

Result<VideoDetail> playVideo(const std::string& name) {
  return readLibrary().and_then([&](const Videos& videos) { return findVideo(videos, name); }).and_then(play);
}

Result<VideoDetail> playNextVideo() {
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  return readLibrary().and_then([&](const Videos& videos) -> Result<VideoDetail> {
    const SettingsSuite& suite = (*settings)->suite();
    std::size_t place = placeOf(videos, valueInForce<std::string>(suite, settings::kCurrentVideoSign));
    if (valueInForce<std::int64_t>(suite, settings::kPlayMode) == kShuffle && videos.size() > 1) {
      std::random_device random;
      // Leads to any place but the current one.
      place += std::uniform_int_distribution<std::size_t>(0, videos.size() - 2)(random);
    }
    const VideoDetail* const next = nextPlayable(videos, place, {});
    return next != nullptr ? play(*next) : failed("there is no other video whose file exists");
  });
}

Result<UserFiles> openUserFiles() {
  auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  return openLibrary().map([&](auto library) { return UserFiles{std::move(*settings), std::move(library)}; });
}

Result<Removal> removeVideos(const std::vector<std::string>& names) {
  const auto opened = openUserFiles();
  if (!opened) {
    return failed(opened.error());
  }
  Removal removal;
  auto removed = opened->library->remove(names, [&](const Videos& before, const std::vector<VideoRow>& leaving) {
    removal.rows = leaving;
    return leaveRemoved(*opened->settings, before, removal);
  });
  if (!removed) {
    return failed(removed.error());
  }
  postLibraryChange();
  return removal;
}

Outcome restoreVideos(const Removal& removal) {
  const auto opened = openUserFiles();
  if (!opened) {
    return failed(opened.error());
  }
  if (auto restored = opened->library->restore(removal.rows); !restored) {
    return restored;
  }
  remakeMissingCovers(*opened->library, removal);
  postLibraryChange();
  SettingsSuite& suite = opened->settings->suite();
  if (suite.contains(settings::kLibraryWasEmptied)) {
    suite.remove(settings::kLibraryWasEmptied);
  }
  const auto current = valueInForce<std::string>(suite, settings::kCurrentVideoSign);
  const bool isOpen = valueInForce<bool>(suite, settings::kIsOpenPlayer);
  if (!removal.nextSign.empty() && current == removal.nextSign && isOpen) {
    suite.setString(settings::kCurrentVideoSign, removal.previousSign);
  } else if (removal.closedWallpaper && current == removal.previousSign && !isOpen) {
    suite.setBoolean(settings::kIsOpenPlayer, true);
  }
  return opened->settings->write();
}

Outcome sweepCovers() {
  const auto library = openLibrary();
  return library ? (*library)->sweepCovers() : failed(library.error());
}

Outcome renameVideo(const std::string& sign, const std::string& title) {
  const std::string clean = cleanText(title);
  if (clean.find_first_not_of(' ') == std::string::npos) {
    return failed("a title needs a character");
  }
  const auto library = openLibrary();
  if (!library) {
    return failed(library.error());
  }
  if (auto renamed = (*library)->rename(sign, clean); !renamed) {
    return renamed;
  }
  postLibraryChange();
  return {};
}

Result<std::string> changeSetting(const Setting& setting, const Setting::Value& value) {
  const std::string key = setting.key;
  if (key == settings::kCurrentVideoSign) {
    const auto videos = readLibrary();
    if (!videos) {
      return failed(videos.error());
    }
    if (!hasVideo(*videos, std::get<std::string>(value))) {
      return failed(setting.refusal(textOf(value)));
    }
  }
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  setting.set((*settings)->suite(), value);
  if (const auto written = (*settings)->write(); !written) {
    return failed(written.error());
  }
  return key == settings::kAutolaunch ? setStartsAtLogin(std::get<bool>(value)) : std::string();
}

Outcome announceImport(Settings& settings, const std::string& firstSign, const Videos& before,
                       const std::string& current) {
  SettingsSuite& suite = settings.suite();
  postLibraryChange();
  if (!suite.boolean(settings::kAlreadyImportVideo)) {
    suite.setBoolean(settings::kAlreadyImportVideo, true);
  }
  if (suite.contains(settings::kLibraryWasEmptied)) {
    suite.remove(settings::kLibraryWasEmptied);
  }
  if (!hasVideo(before, current) && valueInForce<std::string>(suite, settings::kCurrentVideoSign) == current) {
    show(suite, firstSign);
  }
  return settings.write();
}

}  // namespace quilex
