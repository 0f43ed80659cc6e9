#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace quilex {

/// Writes what may stand in place of the last of the words that follow the program's name, for a shell that completes a
/// command line: a word for each line and, after a tab, what it means. ":files" alone stands for names of files, which
/// a shell knows best. `app` is the command line as it is understood.
void printCompletions(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace quilex
