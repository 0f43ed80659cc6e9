#include "linux/CommandLine.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "linux/session/bundle/LinuxBundle.h"
#include "linux/toolkit/loop/Log.h"
#include "platform/AppInfo.h"

namespace quilex {

namespace {

constexpr int kNotUnderstood = 2;

constexpr const char* kAbout =
    "Plays videos as the desktop background until the session ends; quilex fills the library and directs it. The exit "
    "status is 0 after an end in good order or when an agent runs already, 1 when there is no desktop to play on or it "
    "went away, 2 when the command line is wrong.";

Ended refuse(const std::string& what) {
  std::fprintf(stderr, "quilexhelper: %s (see quilexhelper --help)\n", what.c_str());
  return {kNotUnderstood};
}

}  // namespace

std::variant<Runs, Ended> readCommandLine(int argc, const char* const* argv) {
  std::string log;
  CLI::App app(kAbout, "quilexhelper");
  app.set_version_flag("--version",
                       [] { return "quilexhelper " + AppInfo(LinuxBundle::main().environment()).displayVersion(); });
  const auto* asked = app.add_option("--log", log, "Writes a log to standard error: " + logHelp());
  app.footer(
      "Environment:\n"
      "  QUILEX_LOG       what to log, if --log does not say it\n"
      "  QUILEX_RENDERER  gpu or cpu: draws pictures with that");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    return Ended{app.exit(success)};
  } catch (const CLI::ParseError& error) {
    return refuse(error.what());
  }
  const char* const variable = std::getenv("QUILEX_LOG");
  const bool isAsked = asked->count() > 0;
  if (const auto started = startLog(isAsked ? log.c_str() : variable != nullptr ? variable : ""); !started) {
    if (isAsked) {
      return refuse("--log: " + started.error().message);
    }
    std::fprintf(stderr, "quilexhelper: QUILEX_LOG: %s; nothing is logged\n", started.error().message.c_str());
  }
  return Runs{};
}

}  // namespace quilex
