#include <unistd.h>

#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/Commands.h"
#include "companion/Completion.h"
#include "companion/Doctor.h"
#include "companion/SettingsTable.h"
#include "companion/Text.h"
#include "linux/session/bundle/LinuxBundle.h"

#ifdef QUILEX_SANITIZED
#include <sanitizer/lsan_interface.h>
#endif

namespace {

using namespace quilex;

constexpr int kNotDone = 1;
constexpr int kNotUnderstood = 2;

constexpr const char* kAbout =
    "Fills the library of video wallpapers and directs the agent that plays them, which follows within a second. "
    "Without arguments it opens a window in which all of that can be done. The exit status is 0 when all was done, 1 "
    "when something was not, 2 when the command line is wrong.";

/// The arguments on the command line, and the command that it asks for.
struct CommandLine {
  std::vector<std::string> names;
  std::string key;
  std::string value;
  bool asJSON = false;
  std::function<Outcome()> command;
};

CLI::App* addCommand(CLI::App& app, CommandLine& line, const char* name, const char* about,
                     std::function<Outcome()> command) {
  auto* added = app.add_subcommand(name, about);
  added->callback([&line, run = std::move(command)] { line.command = run; });
  return added;
}

void addImport(CLI::App& app, CommandLine& line) {
  auto* importing = addCommand(app, line, "import", "Adds video files to the library, where they stay in their place",
                               [&line] { return importCommand(line.names); });
  importing->add_option("FILE", line.names, "Video files; those that cannot be played are refused")->required();
  importing->footer(
      "A video is known by its contents: importing it again adds nothing. After -- a name may begin with -.");
}

void addList(CLI::App& app, CommandLine& line) {
  auto* list = addCommand(app, line, "list", "Shows the videos of the library, the current one with a *",
                          [&line] { return listCommand(line.asJSON ? ListForm::json : ListForm::table); });
  list->add_flag("--json", line.asJSON, "The whole records, as a JSON array");
}

void addPlay(CLI::App& app, CommandLine& line) {
  auto* play = addCommand(app, line, "play", "Shows a video of the library as the wallpaper",
                          [&line] { return playCommand(line.key); });
  play->add_option("SIGN", line.key, "Its sign, or the first 4 or more characters of it")->required();
}

void addRemove(CLI::App& app, CommandLine& line) {
  auto* remove = addCommand(app, line, "remove", "Takes videos out of the library; their files stay",
                            [&line] { return removeCommand(line.names); });
  remove->add_option("SIGN", line.names, "Their signs, or the first 4 or more characters of them")->required();
  remove->footer("If one of the signs is unknown, nothing is removed.");
}

// `get` and `set` read their key and value while the command line is parsed: `value()` throws if one of them is wrong,
// and the exit status is that of a wrong command line.

void addGet(CLI::App& app, CommandLine& line) {
  auto* get = app.add_subcommand("get", "Shows a setting, or all of them");
  get->add_option("KEY", line.key, "The setting");
  get->footer(settingsHelp());
  get->callback([&line] {
    line.command = getAllCommand;
    if (!line.key.empty()) {
      line.command = [setting = findSetting(line.key).value()] { return getCommand(setting); };
    }
  });
}

void addSet(CLI::App& app, CommandLine& line) {
  auto* set = app.add_subcommand("set", "Changes a setting");
  set->add_option("KEY", line.key, "The setting")->required();
  set->add_option("VALUE", line.value, "Its new value")->required();
  set->footer(settingsHelp());
  set->callback([&line] {
    const Setting setting = findSetting(line.key).value();
    line.command = [setting, value = setting.parse(line.value).value()] { return setCommand(setting, value); };
  });
}

void addDoctor(CLI::App& app, CommandLine& line) {
  auto* doctor =
      addCommand(app, line, "doctor", "Writes a report on the programs and the desktop, and what is odd about them",
                 [&line] { return doctorCommand(line.asJSON ? ReportForm::json : ReportForm::text); });
  doctor->add_flag("--json", line.asJSON, "The report as a JSON object");
  doctor->footer(
      "For bug reports. It has ~ in place of your home folder, and the name of a video file only if that cannot be "
      "played.");
}

int fail(const std::string& message, int status) {
  printError(message);
  return status;
}

// Becomes the window, which is a program of its own: the command line starts without the toolkit of windows.
int openWindow(char** argv) {
  const auto program = LinuxBundle::main().path().parent_path().parent_path() / "libexec" / "quilex-window";
  execv(program.c_str(), argv);
  return fail(program.string() + " cannot be started: " + std::strerror(errno), kNotDone);
}

int run(int argc, char** argv) {
  CommandLine line;
  CLI::App app(kAbout, "quilex");
  app.set_version_flag("--version", versionLine);
  app.require_subcommand(0, 1);
  addImport(app, line);
  addList(app, line);
  addPlay(app, line);
  addRemove(app, line);
  addGet(app, line);
  addSet(app, line);
  addCommand(app, line, "status", "Shows what the agent is doing", statusCommand);
  addDoctor(app, line);
  // Not shown in the help, because only shells use it.
  if (argc > 1 && std::string_view(argv[1]) == "complete") {
    printCompletions(app, {argv + 2, argv + argc});
    return EXIT_SUCCESS;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return app.exit(asked);
  } catch (const CLI::ParseError& error) {
    return fail(std::string(error.what()) + " (see quilex --help)", kNotUnderstood);
  } catch (const tl::bad_expected_access<Failure>& error) {
    return fail(error.error().message, kNotUnderstood);
  }
  if (!line.command) {
    return fail("a command is missing (see quilex --help)", kNotUnderstood);
  }
  const Outcome outcome = line.command().and_then(checkOutput);
  return outcome ? EXIT_SUCCESS : fail(outcome.error().message, kNotDone);
}

/// Ends the process, but destroys no static objects: the toolkit's thread for the bus may still read a late answer, and
/// would complain that the types in it are gone.
[[noreturn]] void end(int status) {
  std::fflush(nullptr);
#ifdef QUILEX_SANITIZED
  __lsan_do_leak_check();
#endif
  std::_Exit(status);
}

int runWithToolkit(int argc, char** argv) {
  try {
    const QCoreApplication application(argc, argv);
    return run(argc, argv);
  } catch (const std::exception& error) {
    return fail(error.what(), kNotDone);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    return openWindow(argv);
  }
  // The reader of the output may leave before the work is done.
  std::signal(SIGPIPE, SIG_IGN);
  // Nothing here depends on the locale, but Qt complains about one that is not UTF-8.
  setenv("LC_ALL", "C.UTF-8", 1);
  end(runWithToolkit(argc, argv));
}
