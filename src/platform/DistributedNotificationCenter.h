#pragma once

#include <functional>
#include <string>

#include "base/Disposable.h"

namespace quilex {

/// Notifications between the processes of one user's session, keyed by name. Without such a broadcast on the desktop,
/// posting does nothing and observers are never called. Main thread.
class DistributedNotificationCenter {
 public:
  virtual ~DistributedNotificationCenter() = default;
  /// Calls the handler for each notification of that name from any sender, until the token is released. Whatever else
  /// a notification carries is dropped.
  [[nodiscard]] virtual Disposable observe(const std::string& name, std::function<void()> handler) = 0;
  /// Posts a notification without an object and user information.
  virtual void post(const std::string& name) = 0;
  /// True holds notifications back from this process; false delivers them even while it is not the active one. For
  /// centres that know active processes; others ignore it.
  virtual void setSuspended(bool suspended) = 0;
};

}  // namespace quilex
