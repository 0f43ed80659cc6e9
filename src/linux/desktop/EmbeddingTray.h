#pragma once

#include <functional>

#include "base/Disposable.h"

namespace quilex {

/// A status area of the older kind, in which programs embed windows (System Tray Protocol Specification 0.3). Both
/// functions are empty on desktops that cannot have one.
struct EmbeddingTray {
  std::function<bool()> isPresent;
  /// The handler is called when a tray comes.
  std::function<Disposable(std::function<void()> handler)> observe;
};

}  // namespace quilex
