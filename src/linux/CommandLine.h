#pragma once

#include <variant>

namespace quilex {

/// The command line asked for nothing that needs the agent to run; the process ends with that status.
struct Ended {
  int status;
};
/// The agent is to run.
struct Runs {};

/// Reads the agent's command line, needing neither a desktop nor a bus: answers --help and --version on standard
/// output, says what it does not understand on standard error (status 2), and turns on the log that --log or, without
/// it, QUILEX_LOG asks for. A mistake in the variable is only reported.
std::variant<Runs, Ended> readCommandLine(int argc, const char* const* argv);

}  // namespace quilex
