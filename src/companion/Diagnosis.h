#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "companion/Health.h"
#include "linux/session/dbus/AgentQuestion.h"
#include "platform/AgentStatus.h"

namespace quilex {

/// What is known of an installation and its agent.
struct Facts {
  /// This program's.
  std::string version;
  /// The distribution; the kernel with its architecture.
  std::string system;
  std::string kernel;
  /// Versions of the libraries that this program uses, by their names.
  std::map<std::string, std::string> libraries;
  /// XDG_CURRENT_DESKTOP and XDG_SESSION_TYPE in this program's environment.
  std::string desktop;
  std::string sessionType;
  AgentAnswer agent;
  /// The programs that show status notifier items.
  std::vector<std::string> statusItemHosts;
  FileHealth settings;
  LibraryHealth library;
};

/// With commas in between.
std::string joined(const std::vector<std::string>& words);
/// The state of the agent, in a few words.
std::string agentWord(const AgentAnswer& answer);

/// Something that is not as it should be, and what a person can do about it.
struct Oddity {
  std::string what;
  std::string remedy;
};

/// The worst first.
std::vector<Oddity> findOddities(const Facts& facts);

/// The report as sections of named values. What only the agent knows is null if none answers. Paths in `home` begin
/// with ~ instead.
nlohmann::ordered_json makeReport(const Facts& facts, const std::string& home);
/// The report as lines for a person.
std::vector<std::string> reportLines(const nlohmann::ordered_json& report);

}  // namespace quilex
