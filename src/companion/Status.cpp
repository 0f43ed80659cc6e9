#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "companion/Commands.h"
#include "companion/Diagnosis.h"
#include "companion/Settings.h"
#include "companion/SettingsTable.h"
#include "companion/Text.h"
#include "companion/VideoLibrary.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/BusConnection.h"
#include "platform/AppInfo.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

// What the agent would say of itself, as far as the files hold it.
Result<AgentStatus> statusOfFiles() {
  const LinuxBundle bundle = LinuxBundle::main();
  auto library =
      VideoLibrary::open(AppInfo(bundle.environment()).urls().applicationSupport(), bundle.resource("Quilex", "db"));
  if (auto* failure = std::get_if<Failure>(&library)) {
    return std::move(*failure);
  }
  auto read = std::get<0>(library)->videos();
  if (auto* failure = std::get_if<Failure>(&read)) {
    return std::move(*failure);
  }
  auto opened = Settings::open();
  if (auto* failure = std::get_if<Failure>(&opened)) {
    return std::move(*failure);
  }
  const auto& videos = std::get<std::vector<VideoDetail>>(read);
  const SettingsSuite& suite = std::get<0>(opened)->suite();
  const auto value = [&](const char* key) { return valueInForce(suite, key); };
  AgentStatus status;
  status.videoSign = value(settings::kCurrentVideoSign);
  const auto video = std::ranges::find(videos, status.videoSign, &VideoDetail::sign);
  status.videoTitle = video != videos.end() ? video->title : "not in the library";
  status.videoState = "ready";
  status.isOpen = value(settings::kIsOpenPlayer) == "true";
  status.isPlaying = value(settings::kIsPlaying) == "true";
  status.monitorArrange = static_cast<std::int32_t>(suite.integer(settings::kMonitorArrange));
  status.screenIndex = static_cast<std::int32_t>(suite.integer(settings::kScreenIndex));
  status.playMode = static_cast<std::int32_t>(suite.integer(settings::kPlayMode));
  status.volume = suite.contains(settings::kVolume) ? suite.real(settings::kVolume) : settings::kDefaultVolume;
  status.isMuted = suite.boolean(settings::kMute);
  status.libraryVideos = static_cast<std::uint32_t>(videos.size());
  status.libraryFile = std::get<0>(library)->file();
  return status;
}

// The current video, and how it is where that is worth a word.
std::string videoLine(const AgentStatus& status) {
  if (status.videoSign.empty()) {
    return "none chosen";
  }
  const std::string& state = status.videoState;
  return status.videoTitle + " (" + status.videoSign + ")" + (state == "ready" ? "" : ", " + state);
}

std::string meaningOf(const char* key, std::int32_t value) {
  const std::string meaning = std::get<Setting>(findSetting(key)).meaningOf(value);
  return meaning.empty() ? std::to_string(value) : meaning;
}

// The shortest number that stands for the setting.
std::string volumeText(double volume) {
  char digits[64];
  return {digits, std::to_chars(digits, digits + sizeof digits, static_cast<float>(volume)).ptr};
}

}  // namespace

Outcome statusCommand() {
  const Disposable silentBuses = hideSilentBuses(kAgentPatience, [](BusKind) {});
  const auto answer = askAgent(kAgentPatience);
  const auto* const told = std::get_if<AgentStatus>(&answer);
  auto known = told != nullptr ? Result<AgentStatus>(*told) : statusOfFiles();
  if (auto* failure = std::get_if<Failure>(&known)) {
    return std::move(*failure);
  }
  const auto& status = std::get<AgentStatus>(known);
  const std::uint32_t videos = status.libraryVideos;
  printLine("agent:       " + agentWord(answer));
  printLine("video:       " + cleanText(videoLine(status)));
  printLine(std::string("wallpaper:   ") + (status.isOpen ? "open" : "closed") + ", " +
            (status.isPlaying ? "playing" : "paused"));
  printLine("arrangement: " + meaningOf(settings::kMonitorArrange, status.monitorArrange) + " (ScreenIndex " +
            std::to_string(status.screenIndex) + ")");
  printLine("mode:        " + meaningOf(settings::kPlayMode, status.playMode));
  printLine("volume:      " + volumeText(status.volume) + (status.isMuted ? ", muted" : ", not muted"));
  printLine("library:     " + std::to_string(videos) + (videos == 1 ? " video, " : " videos, ") +
            cleanText(status.libraryFile));
  return std::nullopt;
}

}  // namespace quilex
