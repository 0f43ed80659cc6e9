#pragma once

#include <cstdint>

#include "base/Disposable.h"
#include "platform/StandstillReason.h"

namespace quilex {

// Each of these notifies as StandstillReason::watch does. Main thread.

/// Whether the computer runs on battery, by UPower.
[[nodiscard]] Disposable watchOnBattery(StandstillReason::Handler handler);
/// Whether it does so with less charge than that, in percent.
[[nodiscard]] Disposable watchBelowCharge(std::int64_t percent, StandstillReason::Handler handler);
/// Whether the profile "power-saver" is active, by the power profiles daemon under its older or its newer name.
[[nodiscard]] Disposable watchPowerSaver(StandstillReason::Handler handler);
/// Whether a game has registered with GameMode on the session bus.
[[nodiscard]] Disposable watchGames(StandstillReason::Handler handler);

}  // namespace quilex
