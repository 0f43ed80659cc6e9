#pragma once

#include <functional>

#include "app/Disposable.h"

namespace quilex {

/// Runs the action on the main thread when SIGTERM, SIGINT or SIGHUP arrives, until the token is released. At most one
/// token may exist at a time; needs a QCoreApplication.
[[nodiscard]] Disposable observeTerminationSignals(std::function<void()> action);

}  // namespace quilex
