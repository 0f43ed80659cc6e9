#pragma once

#include <string>
#include <vector>

#include "companion/Result.h"
#include "library/VideoDetail.h"

namespace quilex {

/// How much of a list is asked for.
enum class ListForm { table, json };

/// What reading does about a library that is missing: puts it there first, or fails.
enum class MissingLibrary { placed, left };

/// The videos of the user's library.
Result<std::vector<VideoDetail>> readLibrary(MissingLibrary missing = MissingLibrary::placed);

/// The program's name and version.
std::string versionLine();

// The commands. Each writes what it has to tell to standard output; a failure is what is left to say at the end.

Outcome importCommand(const std::vector<std::string>& files);
Outcome listCommand(ListForm form);
/// `name`, here and below, is a sign or the beginning of one.
Outcome playCommand(const std::string& name);
Outcome removeCommand(const std::vector<std::string>& names);
/// With no key, all settings.
Outcome getCommand(const std::string& key);
Outcome setCommand(const std::string& key, const std::string& value);
/// What the agent says of itself; without one, what the settings and the library have it do.
Outcome statusCommand();

}  // namespace quilex
