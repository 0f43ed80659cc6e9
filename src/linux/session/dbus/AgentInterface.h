#pragma once

#include <QVariant>
#include <string>
#include <vector>

#include "platform/AgentStatus.h"

namespace quilex {

/// The D-Bus interface by which the agent says what it is doing (docs/dbus.md). Properties may be added to it; any
/// other change makes an interface of another name.
struct AgentInterface {
  static constexpr const char* kService = "com.dravo.quilex.QuilexHelper";
  static constexpr const char* kPath = "/com/dravo/quilex/Agent";
  static constexpr const char* kName = "com.dravo.quilex.Agent1";
};

/// A property of that interface, made of a member of the status and read back into it.
struct AgentProperty {
  /// Whether it changes, and whether a change is signalled: silent ones would change all the time.
  enum class Change { never, signalled, silent };

  const char* name;
  /// Of its type.
  const char* signature;
  Change change;
  QVariant (*get)(const AgentStatus& status);
  /// Ignores a value of another type.
  void (*set)(AgentStatus& status, const QVariant& value);
};

/// All of them, in the order of the documentation.
const std::vector<AgentProperty>& agentProperties();

/// The interface as org.freedesktop.DBus.Introspectable describes it.
std::string describeAgentInterface();

}  // namespace quilex
