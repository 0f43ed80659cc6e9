#pragma once

#include <vector>

#include "base/Disposable.h"
#include "platform/StandstillReason.h"

namespace quilex {

/// "The session is locked", by the LockedHint of the agent's session at the login manager org.freedesktop.login1. Its
/// signals Lock and Unlock do not count: they ask for a lock, which may never come, and not every locker sends the
/// second. And "the screen saver is on", by the GetActive and ActiveChanged of the desktops' screen savers.
std::vector<StandstillReason> sessionStandstillReasons();

/// Notifies, as StandstillReason::watch does, whether nobody uses the session, by its IdleHint. Main thread.
[[nodiscard]] Disposable watchIdleSession(StandstillReason::Handler handler);

}  // namespace quilex
