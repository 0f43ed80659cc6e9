#pragma once

#include <functional>

#include "base/Disposable.h"

namespace quilex {

/// Calls the handler each time the machine wakes from sleep: PrepareForSleep(false) of org.freedesktop.login1.Manager
/// on the system bus. Without a system bus or a login manager it is never called.
[[nodiscard]] Disposable observeWakeFromSleep(std::function<void()> handler);

}  // namespace quilex
