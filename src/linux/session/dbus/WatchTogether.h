#pragma once

#include <functional>
#include <vector>

#include "base/Disposable.h"
#include "platform/StandstillReason.h"

namespace quilex {

enum class Together { any, all };

/// Watches several flags as one: true while any or all of them are. Notifies of its changes only.
[[nodiscard]] Disposable watchTogether(Together when, const std::vector<decltype(StandstillReason::watch)>& watches,
                                       StandstillReason::Handler handler);

}  // namespace quilex
