#pragma once

#include <memory>
#include <string>

#include "platform/DistributedNotificationCenter.h"

namespace quilex {

/// Distributed notifications over the D-Bus session bus: signal Posted(s name, s object, a{sv} userInfo) of interface
/// com.dravo.quilex.Notifications at /com/dravo/quilex/Notifications, from any sender. Without a session bus it is
/// neutral.
class DBusNotificationCenter : public DistributedNotificationCenter {
 public:
  DBusNotificationCenter();
  ~DBusNotificationCenter() override;

  [[nodiscard]] Disposable observe(const std::string& name, std::function<void()> handler) override;
  /// Returns once the bus has the notification (or after half a second), so that a process may end right afterwards.
  void post(const std::string& name) override;
  /// A bus delivers to whoever listens.
  void setSuspended(bool /*suspended*/) override {}
};

enum class InstanceState { first, another, noBus };

/// Takes the session-bus name that marks the one agent of a session.
InstanceState claimInstanceName();

enum class AgentPresence { running, absent, noBus };

/// Whether the session has an agent, as that name tells.
AgentPresence agentPresence();

}  // namespace quilex
