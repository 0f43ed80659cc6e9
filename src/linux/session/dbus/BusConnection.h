#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "base/Disposable.h"

namespace quilex {

enum class BusKind { session, system };

/// Finds the buses that accept a connection but do not answer within `patience`, calls `silent` with each, and hides
/// them from the toolkit, which would wait for them forever. Releasing the token makes the toolkit take them for absent
/// for good, and restores the environment. Call this before the toolkit uses a bus and before other threads use the
/// environment.
[[nodiscard]] Disposable hideSilentBuses(std::chrono::milliseconds patience,
                                         const std::function<void(BusKind)>& silent);

/// Posts the notification (see DBusNotificationCenter) over a connection of its own. Returns once the session bus has
/// it, or after `patience`, or if there is no bus. Any thread.
void postSeparately(const std::string& name, std::chrono::milliseconds patience);

}  // namespace quilex
