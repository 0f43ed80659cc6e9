#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/AgentStatus.h"

namespace quilex {

/// Why an agent cannot say what it is doing.
struct NoAgent {
  enum class Reason { noBus, notRunning, noAnswer };
  Reason reason;
  /// What the bus says about it, where it says anything.
  std::string message;
};

/// Longer than an agent or a bus takes that is only busy.
constexpr std::chrono::milliseconds kAgentPatience{2000};

using AgentAnswer = std::variant<AgentStatus, NoAgent>;

/// Asks the session's agent for its status. Waits for the answer for at most `patience`.
AgentAnswer askAgent(std::chrono::milliseconds patience);

/// The processes on the session bus that show status notifier items: those that own a name of a host.
std::vector<std::uint32_t> statusItemHosts(std::chrono::milliseconds patience);

}  // namespace quilex
