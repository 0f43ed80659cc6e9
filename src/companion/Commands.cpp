#include "companion/Commands.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "app/AppInfo.h"
#include "companion/Import.h"
#include "companion/Interruption.h"
#include "companion/Settings.h"
#include "companion/SettingsTable.h"
#include "companion/Text.h"
#include "companion/VideoLibrary.h"
#include "library/FileURL.h"
#include "linux/autostart/AutostartEntry.h"
#include "linux/bundle/LinuxBundle.h"
#include "linux/dbus/DBusNotificationCenter.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using Videos = std::vector<VideoDetail>;

Result<std::unique_ptr<VideoLibrary>> openLibrary(MissingLibrary missing = MissingLibrary::placed) {
  const LinuxBundle bundle = LinuxBundle::main();
  const auto templateFile = missing == MissingLibrary::placed ? bundle.resource("Quilex", "db") : std::nullopt;
  return VideoLibrary::open(AppInfo(bundle.environment()).urls().applicationSupport(), templateFile);
}

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

// The video to go on with after the one at `place`: the next that remains and has its file, from the end back to the
// beginning.
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

// Has the wallpaper leave the videos that are being removed: for the next one, or, when none is left, by closing. A
// wallpaper that is closed stays so; naming another video would open it.
Outcome leaveRemoved(Settings& settings, const Videos& before, const Videos& removed) {
  SettingsSuite& suite = settings.suite();
  const std::string current = valueInForce(suite, settings::kCurrentVideoSign);
  const bool losesAll =
      std::ranges::all_of(before, [&](const VideoDetail& video) { return hasVideo(removed, video.sign); });
  if (losesAll) {
    suite.setBoolean(settings::kLibraryWasEmptied, true);
  }
  if ((losesAll || hasVideo(removed, current)) && valueInForce(suite, settings::kIsOpenPlayer) == "true") {
    const auto place = std::ranges::find(before, current, &VideoDetail::sign) - before.begin();
    if (const auto* next = nextPlayable(before, static_cast<std::size_t>(place), removed)) {
      suite.setString(settings::kCurrentVideoSign, next->sign);
    } else {
      suite.setBoolean(settings::kIsOpenPlayer, false);
    }
  }
  return settings.write();
}

// As the agent does it too, when it runs.
Outcome setStartsAtLogin(bool starts) {
  using State = AutostartEntry::Outcome::State;
  const auto outcome = AutostartEntry::main().set(starts);
  if (outcome.state == State::failed) {
    return Failure{outcome.message};
  }
  if (outcome.state != State::done) {
    printError(outcome.message);
  }
  return std::nullopt;
}

}  // namespace

Result<Videos> readLibrary(MissingLibrary missing) {
  auto opened = openLibrary(missing);
  if (auto* failure = std::get_if<Failure>(&opened)) {
    return std::move(*failure);
  }
  return std::get<0>(opened)->videos();
}

std::string versionLine() {
  return "quilex " + AppInfo(LinuxBundle::main().environment()).displayVersion();
}

Outcome importCommand(const std::vector<std::string>& files) {
  auto openedSettings = Settings::open();
  if (auto* failure = std::get_if<Failure>(&openedSettings)) {
    return std::move(*failure);
  }
  auto openedLibrary = openLibrary();
  if (auto* failure = std::get_if<Failure>(&openedLibrary)) {
    return std::move(*failure);
  }
  auto& settings = *std::get<0>(openedSettings);
  auto& library = *std::get<0>(openedLibrary);
  const auto before = library.videos();
  if (const auto* failure = std::get_if<Failure>(&before)) {
    return *failure;
  }
  SettingsSuite& suite = settings.suite();
  const std::string current = valueInForce(suite, settings::kCurrentVideoSign);
  catchInterruptions();
  const ImportCount count = importVideos(files, library);
  Outcome failure = library.sweepCovers();
  if (!count.firstSign.empty()) {
    postLibraryChange();
    if (!suite.boolean(settings::kAlreadyImportVideo)) {
      suite.setBoolean(settings::kAlreadyImportVideo, true);
    }
    if (suite.contains(settings::kLibraryWasEmptied)) {
      suite.remove(settings::kLibraryWasEmptied);
    }
    // Where there was nothing to show, the first video is what a person wants to see.
    if (!hasVideo(std::get<Videos>(before), current) && valueInForce(suite, settings::kCurrentVideoSign) == current) {
      show(suite, count.firstSign);
    }
    if (auto unwritten = settings.write()) {
      failure = std::move(unwritten);
    }
  }
  if (failure) {
    return failure;
  }
  if (count.wasInterrupted) {
    return Failure{"interrupted; " + std::to_string(count.inLibrary) + " of " + std::to_string(files.size()) +
                   " files are in the library"};
  }
  if (count.refused > 0) {
    return Failure{std::to_string(count.refused) + " of " + std::to_string(files.size()) + " files not imported"};
  }
  return std::nullopt;
}

Outcome listCommand(ListForm form) {
  auto read = readLibrary();
  if (auto* failure = std::get_if<Failure>(&read)) {
    return std::move(*failure);
  }
  const auto& videos = std::get<Videos>(read);
  if (form == ListForm::json) {
    auto array = nlohmann::ordered_json::array();
    for (const VideoDetail& video : videos) {
      array.push_back(video.toJSON());
    }
    // Control characters beyond ASCII are escaped only with everything else beyond it.
    printLine(array.dump(2, ' ', true, nlohmann::ordered_json::error_handler_t::replace));
    return std::nullopt;
  }
  // A list is of use without the settings, which only mark one of its lines.
  const auto opened = Settings::open();
  const auto* settings = std::get_if<std::unique_ptr<Settings>>(&opened);
  printTable(videos, settings != nullptr ? valueInForce((*settings)->suite(), settings::kCurrentVideoSign) : "");
  return std::nullopt;
}

Outcome playCommand(const std::string& name) {
  auto read = readLibrary();
  if (auto* failure = std::get_if<Failure>(&read)) {
    return std::move(*failure);
  }
  auto found = findVideo(std::get<Videos>(read), name);
  if (auto* failure = std::get_if<Failure>(&found)) {
    return std::move(*failure);
  }
  const auto& video = std::get<VideoDetail>(found);
  if (!namesExistingFile(video.url)) {
    return Failure{"the file of " + titleLine(video) + " is gone: " + video.url};
  }
  auto opened = Settings::open();
  if (auto* failure = std::get_if<Failure>(&opened)) {
    return std::move(*failure);
  }
  auto& settings = *std::get<0>(opened);
  show(settings.suite(), video.sign);
  auto wasRefused = settings.allowVideo(video.sign);
  if (auto* failure = std::get_if<Failure>(&wasRefused)) {
    return std::move(*failure);
  }
  if (auto failure = settings.write()) {
    return failure;
  }
  if (std::get<bool>(wasRefused)) {
    // The agent may wait for it, with the settings as they are.
    postLibraryChange();
  }
  printLine(titleLine(video));
  return std::nullopt;
}

Outcome removeCommand(const std::vector<std::string>& names) {
  auto openedSettings = Settings::open();
  if (auto* failure = std::get_if<Failure>(&openedSettings)) {
    return std::move(*failure);
  }
  auto openedLibrary = openLibrary();
  if (auto* failure = std::get_if<Failure>(&openedLibrary)) {
    return std::move(*failure);
  }
  auto& settings = *std::get<0>(openedSettings);
  auto& library = *std::get<0>(openedLibrary);
  auto result = library.remove(
      names, [&](const Videos& before, const Videos& removed) { return leaveRemoved(settings, before, removed); });
  if (auto* failure = std::get_if<Failure>(&result)) {
    return std::move(*failure);
  }
  postLibraryChange();
  for (const VideoDetail& video : std::get<Videos>(result)) {
    printLine(titleLine(video));
  }
  return library.sweepCovers();
}

Outcome getCommand(const std::string& key) {
  auto found = findSetting(key);
  auto* failure = std::get_if<Failure>(&found);
  if (failure != nullptr && !key.empty()) {
    return std::move(*failure);
  }
  auto opened = Settings::open();
  if (auto* unopened = std::get_if<Failure>(&opened)) {
    return std::move(*unopened);
  }
  const auto& suite = std::get<0>(opened)->suite();
  if (failure == nullptr) {
    printLine(cleanText(std::get<Setting>(found).value(suite)));
    return std::nullopt;
  }
  for (const Setting& setting : allSettings()) {
    printLine(cleanText(setting.key + (" " + setting.value(suite))));
  }
  return std::nullopt;
}

Outcome setCommand(const std::string& key, const std::string& value) {
  auto found = findSetting(key);
  if (auto* failure = std::get_if<Failure>(&found)) {
    return std::move(*failure);
  }
  if (key == settings::kCurrentVideoSign) {
    auto read = readLibrary();
    if (auto* failure = std::get_if<Failure>(&read)) {
      return std::move(*failure);
    }
    if (!hasVideo(std::get<Videos>(read), value)) {
      return Failure{key + " must be " + std::get<Setting>(found).expected + ", not \"" + value + "\""};
    }
  }
  auto opened = Settings::open();
  if (auto* failure = std::get_if<Failure>(&opened)) {
    return std::move(*failure);
  }
  auto& settings = *std::get<0>(opened);
  if (auto refused = std::get<Setting>(found).set(settings.suite(), value)) {
    return refused;
  }
  if (auto failure = settings.write()) {
    return failure;
  }
  return key == settings::kAutolaunch ? setStartsAtLogin(value == "true") : std::nullopt;
}

}  // namespace quilex
