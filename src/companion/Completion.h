#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace quilex {

/// Completes a command line for a shell. `words` follow the program's name, and the last one, which may be empty, is to
/// be completed. Writes one possible word a line and, after a tab, its meaning. The line ":files" stands for the names
/// of files, which the shell finds itself. `app` describes the command line.
void printCompletions(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace quilex
