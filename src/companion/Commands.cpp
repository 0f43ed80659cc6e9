#include "companion/Commands.h"

#include <algorithm>
#include <utility>

#include "companion/Import.h"
#include "companion/Interruption.h"
#include "companion/Settings.h"
#include "companion/Text.h"
#include "companion/VideoLibrary.h"
#include "library/FileURL.h"
#include "linux/session/autostart/AutostartEntry.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/DBusNotificationCenter.h"
#include "platform/AppInfo.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using Videos = std::vector<VideoDetail>;

void postLibraryChange() {
  DBusNotificationCenter().post("UpdateVideoList");
}

std::string titleLine(const VideoDetail& video) {
  return cleanText(video.sign + "  " + video.title);
}

std::string duration(std::int64_t seconds) {
  const auto twoDigits = [](std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  const std::int64_t hours = seconds / 3600;
  const std::int64_t minutes = seconds / 60 % 60;
  return (hours > 0 ? std::to_string(hours) + ":" + twoDigits(minutes) : std::to_string(minutes)) + ":" +
         twoDigits(seconds % 60);
}

void printTable(const Videos& videos, const std::string& current) {
  std::vector<std::vector<std::string>> rows{{"  SIGN", "DURATION", "SIZE", "TITLE"}};
  for (const VideoDetail& video : videos) {
    const char* note = namesExistingFile(video.url) ? "" : " (its file is gone)";
    rows.push_back({(video.sign == current ? "* " : "  ") + cleanText(video.sign), duration(video.time),
                    std::to_string(video.width) + "x" + std::to_string(video.height), cleanText(video.title) + note});
  }
  std::vector<std::size_t> widths(rows.front().size());
  for (const auto& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], row[column].size());
    }
  }
  for (auto& row : rows) {
    std::string line;
    for (std::size_t column = 0; column + 1 < row.size(); ++column) {
      row[column].resize(widths[column], ' ');
      line += row[column] + "  ";
    }
    printLine(line + row.back());
  }
}

bool hasVideo(const Videos& videos, const std::string& sign) {
  return std::ranges::find(videos, sign, &VideoDetail::sign) != videos.end();
}

// The next video after `place` that remains and whose file exists; the last one is followed by the first.
const VideoDetail* nextPlayable(const Videos& videos, std::size_t place, const Videos& removed) {
  for (std::size_t step = 1; step < videos.size(); ++step) {
    const VideoDetail& video = videos[(place + step) % videos.size()];
    if (!hasVideo(removed, video.sign) && namesExistingFile(video.url)) {
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

// Moves the wallpaper off the videos that are being removed: to the next one, or, if none is left, by closing it. A
// wallpaper that is closed keeps its video, because naming another one would open it.
Outcome leaveRemoved(Settings& settings, const Videos& before, const Videos& removed) {
  SettingsSuite& suite = settings.suite();
  const auto current = valueInForce<std::string>(suite, settings::kCurrentVideoSign);
  const bool losesAll =
      std::ranges::all_of(before, [&](const VideoDetail& video) { return hasVideo(removed, video.sign); });
  if (losesAll) {
    suite.setBoolean(settings::kLibraryWasEmptied, true);
  }
  if ((losesAll || hasVideo(removed, current)) && valueInForce<bool>(suite, settings::kIsOpenPlayer)) {
    const auto place = std::ranges::find(before, current, &VideoDetail::sign) - before.begin();
    if (const auto* next = nextPlayable(before, static_cast<std::size_t>(place), removed)) {
      suite.setString(settings::kCurrentVideoSign, next->sign);
    } else {
      suite.setBoolean(settings::kIsOpenPlayer, false);
    }
  }
  return settings.write();
}

// Notifies the agent of new videos and records them in the settings. If the current video, `current`, was not in the
// library before, there was nothing to show, and the first new one is shown.
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

// A running agent does the same when the setting changes.
Outcome setStartsAtLogin(bool starts) {
  const auto change = AutostartEntry::main().set(starts);
  if (!change) {
    return failed(change.error());
  }
  if (change->state != AutostartEntry::Change::State::done) {
    printError(change->message);
  }
  return {};
}

}  // namespace

std::string versionLine() {
  return "quilex " + AppInfo(LinuxBundle::main().environment()).displayVersion();
}

Outcome importCommand(const std::vector<std::string>& files) {
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  const auto library = openLibrary();
  if (!library) {
    return failed(library.error());
  }
  const auto before = (*library)->videos();
  if (!before) {
    return failed(before.error());
  }
  const auto current = valueInForce<std::string>((*settings)->suite(), settings::kCurrentVideoSign);
  catchInterruptions();
  const ImportCount count = importVideos(files, **library);
  Outcome swept = (*library)->sweepCovers();
  if (!count.firstSign.empty()) {
    if (auto announced = announceImport(**settings, count.firstSign, *before, current); !announced) {
      return announced;
    }
  }
  if (!swept) {
    return swept;
  }
  if (count.wasInterrupted) {
    return failed("interrupted; " + std::to_string(count.inLibrary) + " of " + std::to_string(files.size()) +
                  " files are in the library");
  }
  if (count.refused > 0) {
    return failed(std::to_string(count.refused) + " of " + std::to_string(files.size()) + " files not imported");
  }
  return {};
}

Outcome listCommand(ListForm form) {
  const auto videos = readLibrary();
  if (!videos) {
    return failed(videos.error());
  }
  if (form == ListForm::json) {
    auto array = nlohmann::ordered_json::array();
    for (const VideoDetail& video : *videos) {
      array.push_back(video.toJSON());
    }
    // Everything beyond ASCII is escaped, because otherwise the JSON library would not escape the control characters
    // there.
    printLine(array.dump(2, ' ', true, nlohmann::ordered_json::error_handler_t::replace));
    return {};
  }
  // The settings only mark the current video, so the list is of use without them.
  const auto settings = Settings::open();
  printTable(*videos,
             settings ? valueInForce<std::string>((*settings)->suite(), settings::kCurrentVideoSign) : std::string());
  return {};
}

Outcome playCommand(const std::string& name) {
  const auto video = readLibrary().and_then([&](const Videos& videos) { return findVideo(videos, name); });
  if (!video) {
    return failed(video.error());
  }
  if (!namesExistingFile(video->url)) {
    return failed("the file of " + titleLine(*video) + " is gone: " + video->url);
  }
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  show((*settings)->suite(), video->sign);
  const auto wasRefused = (*settings)->allowVideo(video->sign);
  if (!wasRefused) {
    return failed(wasRefused.error());
  }
  if (auto written = (*settings)->write(); !written) {
    return written;
  }
  if (*wasRefused) {
    // The agent may be waiting for this video, and the settings may be the same as before.
    postLibraryChange();
  }
  printLine(titleLine(*video));
  return {};
}

Outcome removeCommand(const std::vector<std::string>& names) {
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  const auto library = openLibrary();
  if (!library) {
    return failed(library.error());
  }
  const auto removed = (*library)->remove(
      names, [&](const Videos& before, const Videos& leaving) { return leaveRemoved(**settings, before, leaving); });
  if (!removed) {
    return failed(removed.error());
  }
  postLibraryChange();
  for (const VideoDetail& video : *removed) {
    printLine(titleLine(video));
  }
  return (*library)->sweepCovers();
}

Outcome getCommand(const Setting& setting) {
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  printLine(cleanText(textOf(setting.value((*settings)->suite()))));
  return {};
}

Outcome getAllCommand() {
  const auto settings = Settings::open();
  if (!settings) {
    return failed(settings.error());
  }
  for (const Setting& setting : allSettings()) {
    printLine(cleanText(setting.key + (" " + textOf(setting.value((*settings)->suite())))));
  }
  return {};
}

Outcome setCommand(const Setting& setting, const Setting::Value& value) {
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
  if (auto written = (*settings)->write(); !written) {
    return written;
  }
  return key == settings::kAutolaunch ? setStartsAtLogin(std::get<bool>(value)) : Outcome();
}

}  // namespace quilex
