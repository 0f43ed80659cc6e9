#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/AgentStatus.h"

namespace quilex {

/// Why the agent's status is not known.
struct NoAgent {
  enum class Reason { noBus, notRunning, noAnswer };
  Reason reason;
  /// The bus's error message, if there is one.
  std::string message;
};

/// Longer than a busy agent or bus takes.
constexpr std::chrono::milliseconds kAgentPatience{2000};

using AgentAnswer = std::variant<AgentStatus, NoAgent>;

/// Asks the session's agent for its status. Waits for the answer for at most `patience`.
AgentAnswer askAgent(std::chrono::milliseconds patience);

/// The processes that show status notifier items, which are those that own a host's name on the session bus.
std::vector<std::uint32_t> statusItemHosts(std::chrono::milliseconds patience);

}  // namespace quilex
