#pragma once

#include <string>
#include <vector>

#include "base/Disposable.h"
#include "platform/BackgroundWork.h"
#include "platform/RunLoop.h"
#include "platform/StandstillReason.h"

namespace quilex {

/// Watches whether a program with one of these names runs, as `ps -e` lists them: the kernel keeps the first 15
/// characters. Looks every few seconds, beside the main thread. Notifies as StandstillReason::watch does. Both services
/// must outlive the token.
[[nodiscard]] Disposable watchPrograms(const std::vector<std::string>& names, BackgroundWork& backgroundWork,
                                       RunLoop& loop, StandstillReason::Handler handler);

}  // namespace quilex
