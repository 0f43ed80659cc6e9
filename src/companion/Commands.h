#pragma once

#include <string>
#include <vector>

#include "base/Result.h"
#include "companion/SettingsTable.h"

namespace quilex {

/// How the library is printed: the main facts in a table, or whole records as JSON.
enum class ListForm { table, json };

/// The program's name and version.
std::string versionLine();

// The commands. Each writes its result to standard output; its failure is left for the caller to print.

Outcome importCommand(const std::vector<std::string>& files);
Outcome listCommand(ListForm form);
/// `name`, here and below, is a sign or the beginning of one.
Outcome playCommand(const std::string& name);
Outcome removeCommand(const std::vector<std::string>& names);
Outcome getCommand(const Setting& setting);
Outcome getAllCommand();
Outcome setCommand(const Setting& setting, const Setting::Value& value);
/// Shows the agent's own report; if no agent runs, what the settings and the library say.
Outcome statusCommand();

}  // namespace quilex
