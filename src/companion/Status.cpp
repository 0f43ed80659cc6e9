#include <algorithm>

#include "companion/Commands.h"
#include "companion/Diagnosis.h"
#include "companion/Settings.h"
#include "companion/SettingsTable.h"
#include "companion/Text.h"
#include "companion/VideoLibrary.h"
#include "linux/session/dbus/BusConnection.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

// The agent's status as far as the files show it.
Result<AgentStatus> statusOfFiles() {
  const auto library = openLibrary();
  if (!library) {
    return failed(library.error());
  }
  const auto videos = (*library)->videos();
  if (!videos) {
    return failed(videos.error());
  }
  const auto opened = Settings::open();
  if (!opened) {
    return failed(opened.error());
  }
  const SettingsSuite& suite = (*opened)->suite();
  const auto number = [&](const char* key) {
    return static_cast<std::int32_t>(valueInForce<std::int64_t>(suite, key));
  };
  AgentStatus status;
  status.videoSign = valueInForce<std::string>(suite, settings::kCurrentVideoSign);
  const auto video = std::ranges::find(*videos, status.videoSign, &VideoDetail::sign);
  status.videoTitle = video != videos->end() ? video->title : "not in the library";
  status.videoState = "ready";
  status.isOpen = valueInForce<bool>(suite, settings::kIsOpenPlayer);
  status.isPlaying = valueInForce<bool>(suite, settings::kIsPlaying);
  status.monitorArrange = number(settings::kMonitorArrange);
  status.screenIndex = number(settings::kScreenIndex);
  status.playMode = number(settings::kPlayMode);
  status.volume = valueInForce<float>(suite, settings::kVolume);
  status.isMuted = valueInForce<bool>(suite, settings::kMute);
  status.libraryVideos = static_cast<std::uint32_t>(videos->size());
  status.libraryFile = (*library)->file();
  return status;
}

// The current video, and its state unless it is ready.
std::string videoLine(const AgentStatus& status) {
  if (status.videoSign.empty()) {
    return "none chosen";
  }
  const std::string& state = status.videoState;
  return status.videoTitle + " (" + status.videoSign + ")" + (state == "ready" ? "" : ", " + state);
}

std::string standstill(const AgentStatus& status) {
  const bool isMeantToMove = status.isOpen && status.isPlaying;
  return !isMeantToMove || status.standsStillBecause.empty()
             ? ""
             : "; stands still because " + cleanText(joined(status.standsStillBecause));
}

std::string meaningOf(const char* key, std::int32_t value) {
  const auto setting = findSetting(key);
  const auto index = static_cast<std::size_t>(value);
  return value >= 0 && index < setting->meanings.size() ? setting->meanings[index] : std::to_string(value);
}

}  // namespace

Outcome statusCommand() {
  const Disposable silentBuses = hideSilentBuses(kAgentPatience, [](BusKind) {});
  const auto answer = askAgent(kAgentPatience);
  const auto* const reported = std::get_if<AgentStatus>(&answer);
  const auto status = reported != nullptr ? Result<AgentStatus>(*reported) : statusOfFiles();
  if (!status) {
    return failed(status.error());
  }
  const std::uint32_t videos = status->libraryVideos;
  printLine("agent:       " + agentWord(answer));
  printLine("video:       " + cleanText(videoLine(*status)));
  printLine(std::string("wallpaper:   ") + (status->isOpen ? "open" : "closed") + ", " +
            (status->isPlaying ? "playing" : "paused") + standstill(*status));
  printLine("arrangement: " + meaningOf(settings::kMonitorArrange, status->monitorArrange) + " (ScreenIndex " +
            std::to_string(status->screenIndex) + ")");
  printLine("mode:        " + meaningOf(settings::kPlayMode, status->playMode));
  printLine("volume:      " + textOf(static_cast<float>(status->volume)) +
            (status->isMuted ? ", muted" : ", not muted"));
  printLine("library:     " + std::to_string(videos) + (videos == 1 ? " video, " : " videos, ") +
            cleanText(status->libraryFile));
  return {};
}

}  // namespace quilex
