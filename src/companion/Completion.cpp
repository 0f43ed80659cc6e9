#include "companion/Completion.h"

#include <algorithm>
#include <string_view>

#include "companion/Commands.h"
#include "companion/SettingsTable.h"
#include "companion/Text.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

constexpr const char* kAnyFile = ":files";

void offer(const std::string& beginning, const std::string& word, const std::string& meaning) {
  if (word.starts_with(beginning)) {
    printLine(word + "\t" + cleanText(meaning));
  }
}

// A shell would take some characters for its own.
bool isPlain(const std::string& sign) {
  constexpr std::string_view kPlain = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_.";
  return !sign.empty() && sign.find_first_not_of(kPlain) == std::string::npos;
}

void offerVideos(const std::string& beginning, const std::vector<std::string>& namedAlready) {
  // Who presses a key to see what there is has not asked for a library.
  const auto read = readLibrary(MissingLibrary::left);
  const auto* videos = std::get_if<std::vector<VideoDetail>>(&read);
  for (const VideoDetail& video : videos != nullptr ? *videos : std::vector<VideoDetail>()) {
    if (isPlain(video.sign) && std::ranges::find(namedAlready, video.sign) == namedAlready.end()) {
      offer(beginning, video.sign, video.title);
    }
  }
}

void offerValues(const std::string& beginning, const std::string& key) {
  const auto found = findSetting(key);
  const auto* setting = std::get_if<Setting>(&found);
  if (key == settings::kCurrentVideoSign) {
    offerVideos(beginning, {});
  } else if (setting != nullptr && setting->type == Setting::Type::boolean) {
    offer(beginning, "true", setting->meaning);
    offer(beginning, "false", "");
  } else if (setting != nullptr && setting->type == Setting::Type::integer) {
    for (std::int64_t number = 0; !setting->meaningOf(number).empty(); ++number) {
      offer(beginning, std::to_string(number), setting->meaningOf(number));
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

}  // namespace

void printCompletions(const CLI::App& app, const std::vector<std::string>& words) {
  const std::string word = words.empty() ? "" : words.back();
  const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
  if (words.size() < 2) {
    for (const CLI::App* command : commands) {
      offer(word, command->get_name(), command->get_description());
    }
    if (word.starts_with("-")) {
      offerOptions(app, word);
    }
    return;
  }
  const auto found =
      std::ranges::find_if(commands, [&](const CLI::App* command) { return command->get_name() == words.front(); });
  if (found == commands.end()) {
    return;
  }
  const CLI::App* command = *found;
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
    offerOptions(*command, word);
    return;
  }
  std::size_t room = arguments.size();
  for (const CLI::Option* positional : command->get_options(&CLI::Option::get_positional)) {
    const auto most = static_cast<std::size_t>(positional->get_items_expected_max());
    if (room >= most) {
      room -= most;
    } else if (const std::string name = positional->get_name(true); name == "FILE") {
      printLine(kAnyFile);
      return;
    } else if (name == "SIGN") {
      offerVideos(word, arguments);
      return;
    } else if (name == "KEY") {
      for (const Setting& setting : allSettings()) {
        offer(word, setting.key, setting.meaning);
      }
      return;
    } else if (name == "VALUE") {
      offerValues(word, arguments.front());
      return;
    }
  }
}

}  // namespace quilex
