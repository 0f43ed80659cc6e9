#pragma once

#include <QVariant>
#include <string>
#include <vector>

#include "platform/AgentStatus.h"

namespace quilex {

/// The D-Bus interface that shows what the agent is doing (docs/dbus.md). Properties may be added to it; any
/// other change makes an interface of another name.
struct AgentInterface {
  static constexpr const char* kService = "com.dravo.quilex.QuilexHelper";
  static constexpr const char* kPath = "/com/dravo/quilex/Agent";
  static constexpr const char* kName = "com.dravo.quilex.Agent1";
};

/// A property of that interface, and the member of the status that it stands for.
struct AgentProperty {
  /// Whether the property changes, and whether changes are signalled. Silent ones change all the time.
  enum class Change { never, signalled, silent };

  const char* name;
  /// The D-Bus signature of its type.
  const char* signature;
  Change change;
  QVariant (*get)(const AgentStatus& status);
  /// A value of another type is converted, or reads as 0, false or empty.
  void (*set)(AgentStatus& status, const QVariant& value);
};

/// All properties, in the order of the documentation.
const std::vector<AgentProperty>& agentProperties();

/// The interface as org.freedesktop.DBus.Introspectable describes it.
std::string describeAgentInterface();

}  // namespace quilex
