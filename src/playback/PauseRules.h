#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "platform/StandstillReason.h"
#include "playback/Standstill.h"
#include "settings/Preferences.h"

namespace quilex {

/// How the desktop notices what the rules ask for. Each notifies as StandstillReason::watch does.
struct PauseWatches {
  using Watch = decltype(StandstillReason::watch);
  using Handler = StandstillReason::Handler;

  Watch onBattery;
  std::function<Disposable(std::int64_t percent, Handler handler)> belowCharge;
  Watch inPowerSaver;
  Watch idleSession;
  Watch fullScreenWindow;
  Watch maximizedWindow;
  Watch game;
  std::function<Disposable(const std::vector<std::string>& names, Handler handler)> program;
};

/// Turns the rules of the settings that are on into reasons to stand still; what is off is not watched. Main thread.
class PauseRules {
 public:
  /// Settings and standstill must outlive the object.
  PauseRules(Preferences& preferences, Standstill& standstill, PauseWatches watches);
  PauseRules(const PauseRules&) = delete;
  PauseRules& operator=(const PauseRules&) = delete;

 private:
  std::vector<StandstillReason> reasons(const PauseSettings& rules) const;
  void apply(const PauseSettings& rules);

  Standstill& standstill_;
  PauseWatches watches_;
  /// By the reasons' clauses.
  std::map<std::string, Disposable> respected_;
  Disposable changes_;
};

}  // namespace quilex
