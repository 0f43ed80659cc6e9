#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "companion/Commands.h"
#include "companion/Completion.h"
#include "companion/Doctor.h"
#include "companion/SettingsTable.h"
#include "companion/Text.h"

namespace {

using quilex::Outcome;

constexpr const char* kAbout =
    "Fills the library of video wallpapers and directs the agent that plays them, which follows within a second. "
    "The exit status is 0 when all was done, 1 when something was not, 2 when the command line is wrong.";

/// The command line as it is understood, and the command that it asks for.
struct CommandLine {
  std::vector<std::string> names;
  std::string key;
  std::string value;
  bool asJSON = false;
  std::function<Outcome()> command;
};

void addLibraryCommands(CLI::App& app, CommandLine& line) {
  auto* importing = app.add_subcommand("import", "Adds video files to the library, where they stay in their place");
  importing->add_option("FILE", line.names, "Video files; those that cannot be played are refused")->required();
  importing->footer(
      "A video is known by its contents: importing it again adds nothing. After -- a name may begin with -.");
  importing->callback([&line] { line.command = [&line] { return quilex::importCommand(line.names); }; });

  auto* list = app.add_subcommand("list", "Shows the videos of the library, the current one with a *");
  list->add_flag("--json", line.asJSON, "The whole records, as a JSON array");
  list->callback([&line] {
    line.command = [&line] {
      return quilex::listCommand(line.asJSON ? quilex::ListForm::json : quilex::ListForm::table);
    };
  });

  auto* play = app.add_subcommand("play", "Shows a video of the library as the wallpaper");
  play->add_option("SIGN", line.key, "Its sign, or the first 4 or more characters of it")->required();
  play->callback([&line] { line.command = [&line] { return quilex::playCommand(line.key); }; });

  auto* remove = app.add_subcommand("remove", "Takes videos out of the library; their files stay");
  remove->add_option("SIGN", line.names, "Their signs, or the first 4 or more characters of them")->required();
  remove->footer("If one of the signs is unknown, nothing is removed.");
  remove->callback([&line] { line.command = [&line] { return quilex::removeCommand(line.names); }; });
}

void addSettingsCommands(CLI::App& app, CommandLine& line) {
  auto* get = app.add_subcommand("get", "Shows a setting, or all of them");
  get->add_option("KEY", line.key, "The setting");
  get->footer(quilex::settingsHelp());
  get->callback([&line] { line.command = [&line] { return quilex::getCommand(line.key); }; });

  auto* set = app.add_subcommand("set", "Changes a setting");
  set->add_option("KEY", line.key, "The setting")->required();
  set->add_option("VALUE", line.value, "Its new value")->required();
  set->footer(quilex::settingsHelp());
  set->callback([&line] { line.command = [&line] { return quilex::setCommand(line.key, line.value); }; });

  auto* status = app.add_subcommand("status", "Tells what the agent is doing");
  status->callback([&line] { line.command = quilex::statusCommand; });

  auto* doctor =
      app.add_subcommand("doctor", "Writes a report on the programs and the desktop, and what is odd about them");
  doctor->add_flag("--json", line.asJSON, "The report as a JSON object");
  doctor->footer(
      "For bug reports. It has ~ in place of your home folder, and the name of a video file only if that cannot be "
      "played.");
  doctor->callback([&line] {
    line.command = [&line] {
      return quilex::doctorCommand(line.asJSON ? quilex::ReportForm::json : quilex::ReportForm::text);
    };
  });
}

int run(int argc, char** argv) {
  CommandLine line;
  CLI::App app(kAbout, "quilex");
  app.set_version_flag("--version", quilex::versionLine);
  app.require_subcommand(1);
  addLibraryCommands(app, line);
  addSettingsCommands(app, line);
  // Not a command for people, so that no help shows it.
  if (argc > 1 && std::string_view(argv[1]) == "complete") {
    quilex::printCompletions(app, {argv + 2, argv + argc});
    return EXIT_SUCCESS;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return app.exit(asked);
  } catch (const CLI::ParseError& error) {
    quilex::printError(std::string(error.what()) + " (see quilex --help)");
    return quilex::kNotUnderstood;
  }
  if (const auto failure = line.command()) {
    quilex::printError(failure->message);
    return failure->exitStatus;
  }
  if (const auto problem = quilex::outputError()) {
    quilex::printError("the output cannot be written: " + *problem);
    return quilex::kNotDone;
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader of the output may leave before the end, while the work goes on.
  std::signal(SIGPIPE, SIG_IGN);
  // Nothing here depends on the locale, except that Qt complains about one whose text is not UTF-8.
  setenv("LC_ALL", "C.UTF-8", 1);
  try {
    const QCoreApplication application(argc, argv);
    return run(argc, argv);
  } catch (const std::exception& error) {
    quilex::printError(error.what());
    return quilex::kNotDone;
  }
}
