#include "companion/Completion.h"

#include <algorithm>
#include <string_view>

#include "companion/SettingsTable.h"
#include "companion/Text.h"
#include "companion/VideoLibrary.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

constexpr const char* kAnyFile = ":files";
constexpr auto kAnyCommand = [](const CLI::App* /*command*/) { return true; };

void offer(const std::string& beginning, const std::string& word, const std::string& meaning) {
  if (word.starts_with(beginning)) {
    printLine(word + "\t" + cleanText(meaning));
  }
}

// True for a sign that no shell would have to quote.
bool isPlain(const std::string& sign) {
  constexpr std::string_view kPlain = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_.";
  return !sign.empty() && sign.find_first_not_of(kPlain) == std::string::npos;
}

void offerVideos(const std::string& beginning, const std::vector<std::string>& namedAlready) {
  // Completion must not create a library.
  const auto videos = readLibrary(MissingLibrary::left);
  for (const VideoDetail& video : videos ? *videos : std::vector<VideoDetail>()) {
    if (isPlain(video.sign) && std::ranges::find(namedAlready, video.sign) == namedAlready.end()) {
      offer(beginning, video.sign, video.title);
    }
  }
}

void offerSettings(const std::string& beginning) {
  for (const Setting& setting : allSettings()) {
    offer(beginning, setting.key, setting.meaning());
  }
}

void offerValues(const std::string& beginning, const std::string& key) {
  const auto setting = findSetting(key);
  if (key == settings::kCurrentVideoSign) {
    offerVideos(beginning, {});
  } else if (setting && std::holds_alternative<bool>(setting->absent)) {
    offer(beginning, "true", setting->meaning());
    offer(beginning, "false", "");
  } else if (setting && setting->isChoice()) {
    for (std::size_t number = 0; number < setting->meanings.size(); ++number) {
      offer(beginning, std::to_string(number), setting->meanings[number]);
    }
  }
}

void offerOptions(const CLI::App& app, const std::string& beginning) {
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      offer(beginning, "--" + name, option->get_description());
    }
  }
}

void offerCommands(const CLI::App& app, const std::string& beginning) {
  for (const CLI::App* command : app.get_subcommands(kAnyCommand)) {
    offer(beginning, command->get_name(), command->get_description());
  }
}

// What may follow these arguments of a command.
void offerArgument(const CLI::App& command, const std::vector<std::string>& arguments, const std::string& beginning) {
  std::size_t place = arguments.size();
  for (const CLI::Option* positional : command.get_options(&CLI::Option::get_positional)) {
    const auto most = static_cast<std::size_t>(positional->get_items_expected_max());
    if (place >= most) {
      place -= most;
      continue;
    }
    const std::string name = positional->get_name(true);
    if (name == "FILE") {
      printLine(kAnyFile);
    } else if (name == "SIGN") {
      offerVideos(beginning, arguments);
    } else if (name == "KEY") {
      offerSettings(beginning);
    } else if (name == "VALUE") {
      offerValues(beginning, arguments.front());
    }
    return;
  }
}

}  // namespace

void printCompletions(const CLI::App& app, const std::vector<std::string>& words) {
  const std::string word = words.empty() ? "" : words.back();
  if (words.size() < 2) {
    offerCommands(app, word);
    if (word.starts_with("-")) {
      offerOptions(app, word);
    }
    return;
  }
  const auto commands = app.get_subcommands(kAnyCommand);
  const auto command =
      std::ranges::find(commands, words.front(), [](const CLI::App* each) { return each->get_name(); });
  if (command == commands.end()) {
    return;
  }
  std::vector<std::string> arguments;
  bool takesOptions = true;
  for (std::size_t place = 1; place + 1 < words.size(); ++place) {
    if (takesOptions && words[place].starts_with("-")) {
      takesOptions = words[place] != "--";
    } else {
      arguments.push_back(words[place]);
    }
  }
  if (takesOptions && word.starts_with("-")) {
    offerOptions(**command, word);
  } else {
    offerArgument(**command, arguments, word);
  }
}

}  // namespace quilex
