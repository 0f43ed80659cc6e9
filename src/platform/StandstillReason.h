#pragma once

#include <functional>
#include <string>

#include "base/Disposable.h"

namespace quilex {

/// Something because of which the wallpaper need not move, such as a locked session. Main thread.
struct StandstillReason {
  using Handler = std::function<void(bool applies)>;

  /// What is the case while it applies, as a clause: "the session is locked".
  std::string clause;
  /// Notifies whenever the reason begins or ceases to apply; if it applies already, in this call or soon after. Until
  /// the first notification it does not apply, and on systems that cannot know there is none.
  std::function<Disposable(Handler handler)> watch;
};

}  // namespace quilex
