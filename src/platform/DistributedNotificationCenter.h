#pragma once

#include <functional>
#include <string>

#include "base/Disposable.h"

namespace quilex {

/// Notifications between the processes of one user's session, keyed by name. Main thread. Where the desktop has no
/// such broadcast, posting does nothing and observers hear nothing.
class DistributedNotificationCenter {
 public:
  virtual ~DistributedNotificationCenter() = default;
  /// Calls the handler for each notification of that name from any sender, until the token is released. What the
  /// notification carries besides its name is dropped.
  [[nodiscard]] virtual Disposable observe(const std::string& name, std::function<void()> handler) = 0;
  /// Posts a notification with no object and no user information.
  virtual void post(const std::string& name) = 0;
  /// Holds notifications back from this process, or, with false, delivers them whether or not it is the active one. A
  /// centre that never holds any back ignores this.
  virtual void setSuspended(bool suspended) = 0;
};

}  // namespace quilex
