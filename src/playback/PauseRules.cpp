#include "playback/PauseRules.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace quilex {

namespace {

// What stands between the commas, without the blanks around it.
std::vector<std::string> namesIn(const std::string& list) {
  std::vector<std::string> names;
  std::istringstream parts(list);
  for (std::string part; std::getline(parts, part, ',');) {
    const std::size_t first = part.find_first_not_of(' ');
    if (first != std::string::npos) {
      names.push_back(part.substr(first, part.find_last_not_of(' ') + 1 - first));
    }
  }
  return names;
}

std::string anyOf(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : " or ") + name;
  }
  return text;
}

}  // namespace

PauseRules::PauseRules(Preferences& preferences, Standstill& standstill, PauseWatches watches)
    : standstill_(standstill),
      watches_(std::move(watches)),
      changes_(preferences.pauseRules.observe([this](const PauseSettings& rules) { apply(rules); })) {
  apply(preferences.pauseRules.get());
}

std::vector<StandstillReason> PauseRules::reasons(const PauseSettings& rules) const {
  std::vector<StandstillReason> all;
  const auto add = [&](bool isOn, std::string clause, PauseWatches::Watch watch) {
    if (isOn) {
      all.push_back({std::move(clause), std::move(watch)});
    }
  };
  add(rules.onBattery, "the computer runs on battery", watches_.onBattery);
  add(rules.belowCharge > 0, "the battery has less than " + std::to_string(rules.belowCharge) + " %",
      [watch = watches_.belowCharge, percent = rules.belowCharge](PauseWatches::Handler handler) {
        return watch(percent, std::move(handler));
      });
  add(rules.inPowerSaver, "power is to be saved", watches_.inPowerSaver);
  add(rules.whenIdle, "nobody uses the computer", watches_.idleSession);
  add(rules.forFullScreen, "a window is full-screen", watches_.fullScreenWindow);
  add(rules.forMaximized, "a window is maximised or full-screen", watches_.maximizedWindow);
  add(rules.forGames, "a game runs", watches_.game);
  const auto names = namesIn(rules.forPrograms);
  add(!names.empty(), anyOf(names) + " runs",
      [watch = watches_.program, names](PauseWatches::Handler handler) { return watch(names, std::move(handler)); });
  return all;
}

void PauseRules::apply(const PauseSettings& rules) {
  const auto wanted = reasons(rules);
  std::erase_if(respected_, [&](const auto& each) {
    return std::ranges::count(wanted, each.first, &StandstillReason::clause) == 0;
  });
  for (const StandstillReason& reason : wanted) {
    if (!respected_.contains(reason.clause)) {
      respected_.emplace(reason.clause, standstill_.respect(reason));
    }
  }
}

}  // namespace quilex
