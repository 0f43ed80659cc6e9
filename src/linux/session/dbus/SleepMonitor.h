#pragma once

#include <functional>

#include "base/Disposable.h"

namespace quilex {

/// Tells each wake of the machine from sleep: PrepareForSleep(false) of org.freedesktop.login1.Manager on the system
/// bus. Never, without a system bus or a login manager.
[[nodiscard]] Disposable observeWakeFromSleep(std::function<void()> handler);

}  // namespace quilex
