#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "base/Disposable.h"

namespace quilex {

enum class BusKind { session, system };

/// Finds the buses that take a connection and then do not answer within `patience`, and tells them by `silent`. The
/// toolkit, which would wait for them without end, takes them for absent if it first looks for them before the token
/// is released. To be called before there are other threads that use the environment.
[[nodiscard]] Disposable hideSilentBuses(std::chrono::milliseconds patience,
                                         const std::function<void(BusKind)>& silent);

/// Posts the notification (see DBusNotificationCenter) on the session bus over a connection of its own. Returns once
/// the bus has it, or after `patience`, or when there is no bus. Any thread.
void postSeparately(const std::string& name, std::chrono::milliseconds patience);

}  // namespace quilex
