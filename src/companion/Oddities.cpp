#include <algorithm>

#include "companion/Diagnosis.h"

namespace quilex {

namespace {

void addFiles(const Facts& facts, std::vector<Oddity>& found) {
  if (!facts.settings.problem.empty()) {
    found.push_back({"the settings file " + facts.settings.path + " " + facts.settings.problem,
                     "repair it by hand, or move it away: the agent then starts with the default settings"});
  }
  if (!facts.library.problem.empty()) {
    found.push_back({"the library " + facts.library.path + " " + facts.library.problem,
                     "move it away and import the videos again: quilex import FILE..."});
  }
  if (const auto& lost = facts.library.lostVideos; !lost.empty()) {
    found.push_back({std::to_string(lost.size()) + " of " + std::to_string(facts.library.videos) +
                         " videos of the library have no file any more",
                     "bring their files back, or quilex remove " + lost.front() + (lost.size() > 1 ? " ..." : "")});
  }
}

void addNoAgent(const NoAgent& agent, std::vector<Oddity>& found) {
  switch (agent.reason) {
    case NoAgent::Reason::noBus:
      found.push_back({"there is no D-Bus session bus here" + (agent.message.empty() ? "" : ": " + agent.message),
                       "run quilex doctor in a terminal of the desktop on which the agent plays"});
      break;
    case NoAgent::Reason::notRunning:
      found.push_back({"the agent is not running", "start it: quilexhelper"});
      break;
    case NoAgent::Reason::noAnswer:
      found.push_back({"the agent does not say what it is doing: " + agent.message,
                       "end it and start it again: pkill -x quilexhelper; quilexhelper"});
      break;
  }
}

void addProgram(const Facts& facts, const AgentStatus& agent, std::vector<Oddity>& found) {
  if (agent.version != facts.version) {
    found.push_back({"the agent is of version " + agent.version + ", quilex of " + facts.version,
                     "start the agent again, so that the installed one runs"});
  }
  if (agent.settingsFile != facts.settings.path || agent.libraryFile != facts.library.path) {
    found.push_back({"the agent reads other files than quilex: " + agent.settingsFile + " and " + agent.libraryFile,
                     "give both the same XDG_CONFIG_HOME and XDG_DATA_HOME"});
  }
}

void addDesktop(const Facts& facts, const AgentStatus& agent, std::vector<Oddity>& found) {
  if (agent.displays.empty()) {
    found.push_back({"no monitor is on", "turn one on"});
  }
  if (agent.backend == "x11" && agent.sessionType == "wayland") {
    found.push_back({"on this Wayland desktop the agent plays through XWayland: " + agent.backendReason,
                     "if the wallpaper is not seen, use a compositor with a layer shell, or a session on X11"});
  }
  if (!agent.placementAdvice.empty()) {
    found.push_back({"the wallpaper lies " + agent.placement, agent.placementAdvice});
  }
  if (agent.statusItem == "none" || (agent.statusItem == "notifier" && facts.statusItemHosts.empty())) {
    found.push_back({"no panel shows the status item",
                     "turn on your panel's status area; on GNOME, install an extension for status notifier items"});
  }
}

void addVideo(const AgentStatus& agent, std::vector<Oddity>& found) {
  if (agent.videoState == "failed" || (!agent.lastFailure.empty() && agent.videoState != "ready")) {
    found.push_back({"a video cannot be played: " + agent.lastFailure,
                     "play another one, or convert the file; QUILEX_LOG=all quilexhelper logs more about it"});
  }
  if (agent.renderer == "cpu" && agent.rendererReason != "QUILEX_RENDERER") {
    found.push_back({"pictures are drawn with the CPU: " + agent.rendererReason,
                     "install your GPU's driver, on Debian with libegl-mesa0 and libgl1-mesa-dri"});
  }
  if (agent.renderer == "gpu" && agent.videoState == "ready" && agent.hardwareDecoder == "no") {
    found.push_back({"the video is decoded with the CPU (" + agent.decoder + ")",
                     "if that takes too much, install your GPU's VA-API driver (vainfo lists what it decodes), or "
                     "convert the video to H.264 with 8 bits"});
  }
  const bool moves = agent.isOpen && agent.isPlaying && agent.standsStillBecause.empty() && agent.videoState == "ready";
  if (moves && agent.framesShown == 0) {
    found.push_back({"no frame was shown in the last minute",
                     "nothing, if windows cover the wallpaper or the video is a single picture; otherwise report it "
                     "with a log: QUILEX_LOG=all quilexhelper"});
  }
  constexpr std::uint32_t kFew = 10;
  constexpr std::uint32_t kOneInTwenty = 20;
  if (agent.framesDropped > kFew && agent.framesDropped > (agent.framesShown + agent.framesDropped) / kOneInTwenty) {
    found.push_back({std::to_string(agent.framesDropped) + " frames came too late in the last minute",
                     "play a video of fewer pixels or frames, or see above what draws and decodes with the CPU"});
  }
}

void addService(const AgentStatus& agent, std::vector<Oddity>& found) {
  if (agent.serviceAddress.empty()) {
    found.push_back({"the agent has no service to ask for updates", "set QuilexServiceURL in its Info.json"});
  } else if (!agent.serviceAnswered && agent.serviceAnswerTime != 0) {
    found.push_back({"the service " + agent.serviceAddress + " did not answer: " + agent.serviceAnswer,
                     "look at the network and its proxy; videos play without the service"});
  }
}

}  // namespace

std::vector<Oddity> findOddities(const Facts& facts) {
  std::vector<Oddity> found;
  addFiles(facts, found);
  if (const auto* const none = std::get_if<NoAgent>(&facts.agent)) {
    addNoAgent(*none, found);
    return found;
  }
  const auto& agent = std::get<AgentStatus>(facts.agent);
  addProgram(facts, agent, found);
  addVideo(agent, found);
  addDesktop(facts, agent, found);
  addService(agent, found);
  return found;
}

}  // namespace quilex
