#pragma once

#include <vector>

#include "base/Disposable.h"
#include "platform/StatusReport.h"
#include "settings/Preferences.h"

namespace quilex {

/// Keeps the status report in step with the settings until the tokens are released. Both must outlive the tokens.
[[nodiscard]] std::vector<Disposable> reportSettings(Preferences& preferences, StatusReport& report);

}  // namespace quilex
