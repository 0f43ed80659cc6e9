#pragma once

#include <variant>

namespace quilex {

/// The agent is not to run; the process ends with that status.
struct Ended {
  int status;
};
/// The agent is to run.
struct Runs {};

/// Reads the agent's command line; needs neither a desktop nor a bus. Answers --help and --version on standard output.
/// Reports what it does not understand on standard error (status 2). Turns on the log that --log or else QUILEX_LOG
/// asks for; a mistake in the variable is only reported.
std::variant<Runs, Ended> readCommandLine(int argc, const char* const* argv);

}  // namespace quilex
