#pragma once

#include <memory>
#include <string>

#include "base/MainThread.h"
#include "platform/DistributedNotificationCenter.h"

namespace quilex {

/// Distributed notifications over the D-Bus session bus: signal Posted(s name, s object, a{sv} userInfo) of interface
/// com.dravo.quilex.Notifications at /com/dravo/quilex/Notifications, from any sender. Without a session bus it does
/// nothing.
class DBusNotificationCenter : public DistributedNotificationCenter {
 public:
  DBusNotificationCenter();
  ~DBusNotificationCenter() override;

  [[nodiscard]] Disposable observe(const std::string& name, std::function<void()> handler) override;
  /// Returns once the bus has the notification, or after half a second, so that the process may end right afterwards.
  void post(const std::string& name) override;
  /// A bus never holds notifications back.
  void setSuspended(bool /*suspended*/) override {}

 private:
  [[no_unique_address]] MainThread mainThread_;
};

enum class InstanceState { first, another, noBus };

/// Claims the session-bus name that only one agent of a session can own.
InstanceState claimInstanceName();

enum class AgentPresence { running, absent, noBus };

/// Whether an agent owns that name.
AgentPresence agentPresence();

}  // namespace quilex
