#include "companion/SettingsTable.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <system_error>

#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using namespace settings;

template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

// The whole text as a number between 0 and `largest`. NaN is not in that range.
template <typename Number>
std::optional<Number> parseNumber(const std::string& given, Number largest) {
  Number number{};
  const char* end = given.data() + given.size();
  const auto [rest, error] = std::from_chars(given.data(), end, number);
  const bool inRange = error == std::errc() && rest == end && number >= Number{0} && number <= largest;
  // Adding 0 turns -0 into 0.
  return inRange ? std::optional(number + Number{0}) : std::nullopt;
}

}  // namespace

std::string textOf(const Setting::Value& value) {
  return std::visit(Overloaded{[](std::int64_t number) { return std::to_string(number); },
                               [](float number) {
                                 char digits[64];
                                 return std::string(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
                               },
                               [](bool flag) { return std::string(flag ? "true" : "false"); },
                               [](const std::string& text) { return text; }},
                    value);
}

std::string Setting::meaning() const {
  std::string all;
  for (const char* each : meanings) {
    all.append(all.empty() ? "" : "; ").append(each);
  }
  return all;
}

Setting::Value Setting::value(const SettingsSuite& suite) const {
  if (!suite.contains(key)) {
    return absent;
  }
  return std::visit(
      Overloaded{[&](std::int64_t) -> Value { return suite.integer(key); },
                 [&](float) -> Value { return suite.real(key); }, [&](bool) -> Value { return suite.boolean(key); },
                 [&](const std::string&) -> Value { return suite.string(key).value_or(""); }},
      absent);
}

Result<Setting::Value> Setting::parse(const std::string& given) const {
  std::optional<Value> value;
  std::visit(Overloaded{[&](std::int64_t) { value = parseNumber<std::int64_t>(given, largest); },
                        [&](float) {
                          if (const auto number = parseNumber<double>(given, static_cast<double>(largest))) {
                            value = static_cast<float>(*number);
                          }
                        },
                        [&](bool) {
                          if (given == textOf(true) || given == textOf(false)) {
                            value = given == textOf(true);
                          }
                        },
                        [&](const std::string&) { value = given; }},
             absent);
  return value ? Result<Value>(*std::move(value)) : failed(refusal(given));
}

Failure Setting::refusal(const std::string& given) const {
  return {std::string(key) + " must be " + expected + ", not \"" + given + "\""};
}

void Setting::set(SettingsSuite& suite, const Value& value) const {
  std::visit(
      Overloaded{[&](std::int64_t number) { suite.setInteger(key, number); },
                 [&](float number) { suite.setReal(key, number); }, [&](bool flag) { suite.setBoolean(key, flag); },
                 [&](const std::string& text) { suite.setString(key, text); }},
      value);
}

const std::vector<Setting>& allSettings() {
  constexpr std::int64_t kZero = 0;
  constexpr std::int64_t kLastScreen = std::numeric_limits<std::int32_t>::max();
  constexpr const char* kFlag = "true or false";
  static const std::vector<Setting> table{
      {kMonitorArrange,
       kZero,
       2,
       "0, 1 or 2",
       {"one picture across all monitors", "the same picture on each", "one monitor only"}},
      {kScreenIndex,
       kZero,
       kLastScreen,
       "a whole number, 0 or more",
       {"the monitor to play on; setting another one switches to that monitor"}},
      {kPlayMode, kZero, 2, "0, 1 or 2", {"repeat one video", "play the list", "shuffle"}},
      {kCurrentVideoSign, std::string(), 0, "the sign of a video in the library", {"the video to play"}},
      {kVolume, kDefaultVolume, 1, "a number from 0 to 1", {"the loudness, linear"}},
      {kMute, false, 0, kFlag, {"no sound"}},
      {kIsOpenPlayer, kDefaultIsOpenPlayer, 0, kFlag, {"the wallpaper is shown"}},
      {kIsPlaying, kDefaultIsPlaying, 0, kFlag, {"the picture moves; false holds it"}},
      {kPauseOnBattery, false, 0, kFlag, {"the picture stands still on battery"}},
      {kPauseBelowCharge,
       kZero,
       100,
       "a whole number from 0 to 100",
       {"the picture stands still on battery with less charge than that, in percent"}},
      {kPauseInPowerSaver, false, 0, kFlag, {"the picture stands still in the power-saver profile"}},
      {kPauseWhenIdle, false, 0, kFlag, {"the picture stands still while nobody uses the session"}},
      {kPauseForFullScreen, false, 0, kFlag, {"the picture stands still while a window is full-screen on any monitor"}},
      {kPauseForMaximized,
       false,
       0,
       kFlag,
       {"the picture stands still while a window is maximised or full-screen on any monitor"}},
      {kPauseForGames, false, 0, kFlag, {"the picture stands still while a game runs that uses GameMode"}},
      {kPauseForPrograms,
       std::string(),
       0,
       "program names, with commas",
       {"the picture stands still while one of these programs runs"}},
      {kAutolaunch, kDefaultAutolaunch, 0, kFlag, {"start at login"}},
      {kAlreadyImportVideo, false, 0, kFlag, {"videos have been imported"}},
  };
  return table;
}

Result<Setting> findSetting(const std::string& key) {
  std::string keys;
  for (const Setting& setting : allSettings()) {
    if (key == setting.key) {
      return setting;
    }
    keys.append(keys.empty() ? "" : ", ").append(setting.key);
  }
  return failed("there is no setting \"" + key + "\"; the settings are " + keys);
}

std::string settingsHelp() {
  const auto column = [](std::string text, std::size_t width) {
    text.resize(std::max(width, text.size() + 1), ' ');
    return text;
  };
  std::string help = "Settings:\n";
  for (const Setting& setting : allSettings()) {
    help += "  " + column(setting.key, 20) + column(setting.expected, 36) + setting.meaning() + "\n";
  }
  return help;
}

}  // namespace quilex
