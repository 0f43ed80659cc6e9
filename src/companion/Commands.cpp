#include "companion/Commands.h"

#include <QString>
#include <algorithm>
#include <filesystem>
#include <set>

#include "companion/Changes.h"
#include "companion/Import.h"
#include "companion/Interruption.h"
#include "companion/Settings.h"
#include "companion/Text.h"
#include "companion/VideoLibrary.h"
#include "library/FileURL.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "platform/AppInfo.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using Videos = std::vector<VideoDetail>;

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

std::string shortName(const std::string& file) {
  constexpr qsizetype kLongest = 40;
  const QString name = QString::fromStdString(cleanText(std::filesystem::path(file).filename().string()));
  return (name.size() <= kLongest ? name : name.left(kLongest - 1) + QChar(0x2026)).toStdString();
}

/// Prints what becomes of the files.
class PrintedImport : public ImportListener {
 public:
  explicit PrintedImport(std::size_t files) : files_(std::to_string(files)) {}

  void reading(std::size_t index, const std::string& file, unsigned percent) override {
    progress_.show("[" + std::to_string(index + 1) + "/" + files_ + "] " + shortName(file) + " " +
                   std::to_string(percent) + " %");
  }
  void imported(const std::string& /*file*/, const VideoDetail& video, VideoLibrary::Addition how) override {
    progress_.erase();
    const char* note = "";
    switch (how) {
      case VideoLibrary::Addition::added:
        break;
      case VideoLibrary::Addition::moved:
        note = " (already in the library; it now plays from its new place)";
        break;
      case VideoLibrary::Addition::known:
        note = " (already in the library)";
        break;
    }
    printLine(video.sign + "  " + video.title + note);
  }
  void refused(const std::string& file, const std::string& reason) override {
    progress_.erase();
    printError(file + ": " + reason);
  }
  bool isInterrupted() override { return interrupted(); }

 private:
  std::string files_;
  Progress progress_;
};

}  // namespace

std::string versionLine() {
  return "quilex " + AppInfo(LinuxBundle::main().environment()).displayVersion();
}

Outcome importCommand(const std::vector<std::string>& files) {
  catchInterruptions();
  PrintedImport printed(files.size());
  const auto count = importVideos(files, printed);
  if (!count) {
    return failed(count.error());
  }
  if (count->wasInterrupted) {
    return failed("interrupted; " + std::to_string(count->inLibrary) + " of " + std::to_string(files.size()) +
                  " files are in the library");
  }
  if (count->refused > 0) {
    return failed(std::to_string(count->refused) + " of " + std::to_string(files.size()) + " files not imported");
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
  return playVideo(name).map([](const VideoDetail& video) { printLine(titleLine(video)); });
}

Outcome removeCommand(const std::vector<std::string>& names) {
  return removeVideos(names).and_then([](const Removal& removal) {
    std::set<std::string> printed;
    for (const VideoRow& row : removal.rows) {
      if (printed.insert(row.video.sign).second) {
        printLine(titleLine(row.video));
      }
    }
    return sweepCovers();
  });
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
  return changeSetting(setting, value).map([](const std::string& note) {
    if (!note.empty()) {
      printError(note);
    }
  });
}

}  // namespace quilex
