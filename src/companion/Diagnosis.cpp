#include "companion/Diagnosis.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <ctime>

#include "companion/Text.h"

namespace quilex {

namespace {

using Json = nlohmann::ordered_json;

const char* const kUnknown = "unknown";

std::string healthWord(const FileHealth& health) {
  return !health.exists ? "not there yet" : health.problem.empty() ? "good" : health.problem;
}

std::string statusItemWord(const Facts& facts, const AgentStatus& agent) {
  if (agent.statusItem == "notifier") {
    return facts.statusItemHosts.empty() ? "nobody" : joined(facts.statusItemHosts);
  }
  return agent.statusItem == "embedded" ? "the panel's tray of the older kind" : "nobody";
}

// ISO 8601, in UTC.
std::string timeText(std::int64_t seconds) {
  const std::time_t time = seconds;
  std::tm parts{};
  gmtime_r(&time, &parts);
  char text[sizeof "2000-01-01T00:00:00Z "];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

void addAgent(const Facts& facts, const AgentStatus& agent, Json& report) {
  report["program"]["agentVersion"] = agent.version;
  report["program"]["agentProcess"] = agent.processId;
  for (const auto& [name, version] : agent.libraries) {
    report["libraries"][name] = version;
  }
  report["desktop"] = {{"desktop", agent.desktop},
                       {"session", agent.sessionType},
                       {"backend", agent.backend},
                       {"whyNotAnother", agent.backendReason.empty() ? "it comes first" : agent.backendReason},
                       {"placement", agent.placement},
                       {"statusItemShownBy", statusItemWord(facts, agent)}};
  report["displays"] = Json::object();
  for (const DisplayStatus& each : agent.displays) {
    report["displays"][each.name] = {{"width", each.frame.width}, {"height", each.frame.height},
                                     {"x", each.frame.x},         {"y", each.frame.y},
                                     {"scale", each.scale},       {"refreshRate", each.refreshRate}};
  }
  report["drawing"] = {{"renderer", agent.renderer},
                       {"why", agent.rendererReason.empty() ? "it comes first" : agent.rendererReason},
                       {"gpu", agent.gpu},
                       {"framesShownInLastMinute", agent.framesShown},
                       {"framesDroppedInLastMinute", agent.framesDropped}};
  report["video"] = {{"sign", agent.videoSign},
                     {"state", agent.videoState},
                     {"wallpaper", agent.isOpen ? "open" : "closed"},
                     {"playing", agent.isPlaying},
                     {"standsStillBecause", joined(agent.standsStillBecause)},
                     {"width", agent.videoWidth},
                     {"height", agent.videoHeight},
                     {"decoder", agent.decoder},
                     {"hardwareDecoder", agent.hardwareDecoder},
                     {"lastFailure", agent.lastFailure}};
  report["service"] = {{"address", agent.serviceAddress},
                       {"lastAnswer", agent.serviceAnswer},
                       {"answeredAt", agent.serviceAnswerTime == 0 ? "" : timeText(agent.serviceAnswerTime)}};
}

bool endsName(char next) {
  return std::isalnum(static_cast<unsigned char>(next)) == 0 && next != '_' && next != '-' && next != '.' &&
         (static_cast<unsigned char>(next) & 0x80) == 0;
}

std::string withoutHome(std::string text, const std::string& home) {
  for (std::size_t place = 0; (place = text.find(home, place)) != std::string::npos; ++place) {
    const std::size_t end = place + home.size();
    if (end == text.size() || endsName(text[end])) {
      text.replace(place, home.size(), "~");
    }
  }
  return text;
}

void clean(Json& value, const std::string& home) {
  if (value.is_string()) {
    const std::string text = cleanText(value.get<std::string>());
    value = home.size() > 1 ? withoutHome(text, home) : text;
  }
  if (value.is_structured()) {
    for (Json& each : value) {
      clean(each, home);
    }
  }
}

// "framesShown" as "frames shown".
std::string label(const std::string& key) {
  std::string words;
  const bool isName = key.empty() || std::islower(static_cast<unsigned char>(key.front())) == 0;
  for (const char letter : key) {
    const auto code = static_cast<unsigned char>(letter);
    const bool startsWord = !isName && std::isupper(code) != 0;
    words += startsWord ? std::string(" ") + static_cast<char>(std::tolower(code)) : std::string(1, letter);
  }
  return words;
}

std::string words(const Json& value) {
  if (value.is_boolean()) {
    return value.get<bool>() ? "yes" : "no";
  }
  if (value.is_string()) {
    const auto text = value.get<std::string>();
    return text.empty() ? "-" : text;
  }
  if (value.is_number_float()) {
    char digits[64];
    return {digits, std::to_chars(digits, digits + sizeof digits, value.get<double>()).ptr};
  }
  if (!value.is_structured()) {
    return value.is_null() ? kUnknown : value.dump();
  }
  std::vector<std::string> parts;
  for (const auto& [key, each] : value.items()) {
    parts.push_back((value.is_object() ? label(key) + " " : "") + words(each));
  }
  return parts.empty() ? "-" : joined(parts);
}

void addValues(const Json& values, std::vector<std::string>& lines) {
  std::size_t width = 0;
  for (const auto& [key, value] : values.items()) {
    width = std::max(width, label(key).size());
  }
  for (const auto& [key, value] : values.items()) {
    const std::string name = label(key);
    lines.push_back("  " + name + std::string(width + 2 - name.size(), ' ') + words(value));
  }
}

void addOddities(const Json& oddities, std::vector<std::string>& lines) {
  for (const Json& each : oddities) {
    lines.push_back("  - " + each["what"].get<std::string>());
    lines.push_back("    what to do: " + each["remedy"].get<std::string>());
  }
}

}  // namespace

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : ", ") + word;
  }
  return text;
}

std::string agentWord(const AgentAnswer& answer) {
  const auto* const none = std::get_if<NoAgent>(&answer);
  if (none == nullptr) {
    return "running";
  }
  switch (none->reason) {
    case NoAgent::Reason::notRunning:
      return "not running";
    case NoAgent::Reason::noAnswer:
      return "running, but does not answer";
    case NoAgent::Reason::noBus:
      break;
  }
  return "unknown: there is no D-Bus session bus";
}

Json makeReport(const Facts& facts, const std::string& home) {
  Json report;
  report["program"] = {{"quilex", facts.version}, {"agent", agentWord(facts.agent)}};
  report["system"] = {{"name", facts.system}, {"kernel", facts.kernel}};
  report["libraries"] = facts.libraries;
  report["desktop"] = {{"desktop", facts.desktop}, {"session", facts.sessionType}, {"backend", nullptr}};
  for (const char* section : {"displays", "drawing", "video"}) {
    report[section] = nullptr;
  }
  report["settings"] = {
      {"file", facts.settings.path}, {"bytes", facts.settings.size}, {"health", healthWord(facts.settings)}};
  report["library"] = {{"file", facts.library.path},
                       {"bytes", facts.library.size},
                       {"health", healthWord(facts.library)},
                       {"videos", facts.library.videos},
                       {"videosWithoutFile", facts.library.lostVideos.size()}};
  report["service"] = nullptr;
  if (const auto* const agent = std::get_if<AgentStatus>(&facts.agent)) {
    addAgent(facts, *agent, report);
  }
  report["odd"] = Json::array();
  for (const auto& [what, remedy] : findOddities(facts)) {
    report["odd"].push_back({{"what", what}, {"remedy", remedy}});
  }
  clean(report, home);
  return report;
}

std::vector<std::string> reportLines(const Json& report) {
  std::vector<std::string> lines;
  for (const auto& [section, values] : report.items()) {
    const bool isOdd = section == "odd";
    if (!lines.empty()) {
      lines.emplace_back();
    }
    lines.push_back(isOdd ? "what is odd" : section);
    if (values.empty()) {
      lines.push_back(std::string("  ") + (isOdd ? "nothing" : values.is_null() ? kUnknown : "none"));
    }
    isOdd ? addOddities(values, lines) : addValues(values, lines);
  }
  return lines;
}

}  // namespace quilex
