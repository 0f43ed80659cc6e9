#include <gtest/gtest.h>

#include "companion/Diagnosis.h"

namespace quilex {

/// An installation in which nothing is odd.
struct DiagnosisTest : testing::Test {
  DiagnosisTest() {
    agent.version = facts.version = "1.0.0";
    agent.settingsFile = facts.settings.path = "/home/ann/.config/settings.json";
    agent.libraryFile = facts.library.path = "/home/ann";
    agent.displays = {{"DP-1", {0, 0, 2560, 1440.5}, 1.5, 59.94}};
    agent.backend = "wayland";
    agent.renderer = "gpu";
    agent.statusItem = "embedded";
    agent.isOpen = agent.isPlaying = true;
    agent.videoState = "ready";
    agent.hardwareDecoder = "vaapi";
    agent.framesShown = 1800;
    agent.framesDropped = 90;
    agent.serviceAddress = "https://example.org";
  }
  nlohmann::ordered_json report() {
    facts.agent = agent;
    return makeReport(facts, "/home/ann");
  }
  Facts facts;
  AgentStatus agent;
};

TEST_F(DiagnosisTest, EachOddityIsFoundByItself) {
  EXPECT_TRUE(report()["odd"].empty());
  const AgentStatus well = agent;
  const std::vector<std::pair<const char*, std::function<void(AgentStatus&)>>> cases{
      {"of version 0.9", [](auto& each) { each.version = "0.9"; }},
      {"other files", [](auto& each) { each.libraryFile = "/elsewhere"; }},
      {"no monitor", [](auto& each) { each.displays.clear(); }},
      {"through XWayland", [](auto& each) { (each.backend = "x11", each.sessionType = "wayland"); }},
      {"no panel", [](auto& each) { each.statusItem = "none"; }},
      {"no panel", [](auto& each) { each.statusItem = "notifier"; }},
      {"cannot be played: it is damaged",
       [](auto& each) { (each.videoState = "failed", each.lastFailure = "it is damaged"); }},
      {"drawn with the CPU: why", [](auto& each) { (each.renderer = "cpu", each.rendererReason = "why"); }},
      {"decoded with the CPU", [](auto& each) { each.hardwareDecoder = "no"; }},
      {"no frame", [](auto& each) { each.framesShown = each.framesDropped = 0; }},
      {"came too late", [](auto& each) { each.framesDropped = 100; }},
      {"no service", [](auto& each) { each.serviceAddress.clear(); }},
      {"did not answer", [](auto& each) { each.serviceAnswerTime = 1; }},
  };
  for (const auto& [words, change] : cases) {
    agent = well;
    change(agent);
    const auto odd = report()["odd"];
    ASSERT_EQ(odd.size(), 1) << words;
    EXPECT_NE(odd[0]["what"].get<std::string>().find(words), std::string::npos) << odd;
  }
  agent = well;
  agent.isPlaying = false;
  agent.framesShown = agent.framesDropped = 0;
  agent.serviceAnswerTime = agent.serviceAnswered = true;
  EXPECT_TRUE(report()["odd"].empty()) << "a wallpaper that is held shows no frames";
  agent.isPlaying = true;
  agent.standsStillBecause = {"the session is locked"};
  EXPECT_TRUE(report()["odd"].empty()) << "nor one that nobody can see";
}

TEST_F(DiagnosisTest, ReadsWellAndNamesNoHomeFolder) {
  agent.lastFailure = "/home/ann/a\x1b.mp4: like /home/anna/b.mp4, /home/ann-b and '/home/ann'";
  const auto lines = reportLines(report());
  const auto has = [&](const std::string& line) { return std::ranges::count(lines, line) == 1; };
  EXPECT_TRUE(has("  DP-1  width 2560, height 1440.5, x 0, y 0, scale 1.5, refresh rate 59.94"));
  EXPECT_TRUE(has("  file    ~/.config/settings.json"));
  EXPECT_TRUE(has("  file                 ~"));
  EXPECT_TRUE(has("  last failure          ~/a .mp4: like /home/anna/b.mp4, /home/ann-b and '~'"));
  EXPECT_EQ(std::vector(lines.end() - 3, lines.end()), (std::vector<std::string>{"", "what is odd", "  nothing"}));
}

}  // namespace quilex
