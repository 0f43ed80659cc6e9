#include "companion/SettingsTable.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using namespace settings;

// The whole text as a number between 0 and `largest`. No number but one in that range passes, NaN included.
template <typename Number>
std::optional<Number> parse(const std::string& given, Number largest) {
  Number number{};
  const char* end = given.data() + given.size();
  const auto [rest, error] = std::from_chars(given.data(), end, number);
  const bool inRange = error == std::errc() && rest == end && number >= Number{0} && number <= largest;
  // The sum makes 0 of -0.
  return inRange ? std::optional(number + Number{0}) : std::nullopt;
}

std::string text(bool value) {
  return value ? "true" : "false";
}

std::string text(float value) {
  char digits[64];
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

}  // namespace

std::string Setting::value(const SettingsSuite& suite) const {
  if (!suite.contains(key)) {
    return absent;
  }
  switch (type) {
    case Type::integer:
      return std::to_string(suite.integer(key));
    case Type::real:
      return text(suite.real(key));
    case Type::boolean:
      return text(suite.boolean(key));
    case Type::text:
      break;
  }
  return suite.string(key).value_or("");
}

std::string Setting::meaningOf(std::int64_t number) const {
  constexpr std::int64_t kFew = 10;
  if (type != Type::integer || largest > kFew || number < 0 || number > largest) {
    return "";
  }
  std::string_view meanings = meaning;
  for (; number > 0; --number) {
    meanings.remove_prefix(std::min(meanings.find("; "), meanings.size() - 2) + 2);
  }
  return std::string(meanings.substr(0, meanings.find(';')));
}

Outcome Setting::set(SettingsSuite& suite, const std::string& given) const {
  switch (type) {
    case Type::integer:
      if (const auto number = parse<std::int64_t>(given, largest)) {
        suite.setInteger(key, *number);
        return std::nullopt;
      }
      break;
    case Type::real:
      if (const auto number = parse<double>(given, static_cast<double>(largest))) {
        suite.setReal(key, static_cast<float>(*number));
        return std::nullopt;
      }
      break;
    case Type::boolean:
      if (given == "true" || given == "false") {
        suite.setBoolean(key, given == "true");
        return std::nullopt;
      }
      break;
    case Type::text:
      suite.setString(key, given);
      return std::nullopt;
  }
  return Failure{std::string(key) + " must be " + expected + ", not \"" + given + "\"", kNotUnderstood};
}

const std::vector<Setting>& allSettings() {
  using Type = Setting::Type;
  constexpr const char* kFlag = "true or false";
  static const std::vector<Setting> table{
      {kMonitorArrange, Type::integer, "0", 2, "0, 1 or 2",
       "one picture across all monitors; the same picture on each; one monitor only"},
      {kScreenIndex, Type::integer, "0", std::numeric_limits<std::int32_t>::max(), "a whole number, 0 or more",
       "the monitor to play on; setting another one switches to that monitor"},
      {kPlayMode, Type::integer, "0", 2, "0, 1 or 2", "repeat one video; play the list; shuffle"},
      {kCurrentVideoSign, Type::text, "", 0, "the sign of a video in the library", "the video to play"},
      {kVolume, Type::real, text(kDefaultVolume), 1, "a number from 0 to 1", "the loudness, linear"},
      {kMute, Type::boolean, text(false), 0, kFlag, "no sound"},
      {kIsOpenPlayer, Type::boolean, text(kDefaultIsOpenPlayer), 0, kFlag, "the wallpaper is shown"},
      {kIsPlaying, Type::boolean, text(kDefaultIsPlaying), 0, kFlag, "the picture moves; false holds it"},
      {kAutolaunch, Type::boolean, text(kDefaultAutolaunch), 0, kFlag, "start at login"},
      {kAlreadyImportVideo, Type::boolean, text(false), 0, kFlag, "videos have been imported"},
  };
  return table;
}

std::string valueInForce(const SettingsSuite& suite, const char* key) {
  return std::get<Setting>(findSetting(key)).value(suite);
}

Result<Setting> findSetting(const std::string& key) {
  std::string keys;
  for (const Setting& setting : allSettings()) {
    if (key == setting.key) {
      return setting;
    }
    keys.append(keys.empty() ? "" : ", ").append(setting.key);
  }
  return Failure{"there is no setting \"" + key + "\"; the settings are " + keys, kNotUnderstood};
}

std::string settingsHelp() {
  const auto column = [](std::string text, std::size_t width) {
    text.resize(std::max(width, text.size() + 1), ' ');
    return text;
  };
  std::string help = "Settings:\n";
  for (const Setting& setting : allSettings()) {
    help += "  " + column(setting.key, 20) + column(setting.expected, 36) + setting.meaning + "\n";
  }
  return help;
}

}  // namespace quilex
