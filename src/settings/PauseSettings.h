#pragma once

#include <cstdint>
#include <string>

namespace quilex {

/// When the picture is to stand still although somebody may see it. All of it is off at first.
struct PauseSettings {
  bool onBattery = false;
  /// On battery with less charge than that, in percent; 0 is off.
  std::int64_t belowCharge = 0;
  /// In the power-saver profile.
  bool inPowerSaver = false;
  /// While nobody uses the session.
  bool whenIdle = false;
  /// While a window is full-screen on any monitor; or maximised or full-screen.
  bool forFullScreen = false;
  bool forMaximized = false;
  /// While a game runs that says so.
  bool forGames = false;
  /// While one of these programs runs; their names are separated by commas.
  std::string forPrograms;
  bool operator==(const PauseSettings&) const = default;
};

}  // namespace quilex
