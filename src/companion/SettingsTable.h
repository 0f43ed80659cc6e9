#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "base/Result.h"
#include "platform/SettingsSuite.h"

namespace quilex {

/// One setting, for showing it and for reading it from text.
struct Setting {
  using Value = std::variant<std::int64_t, float, bool, std::string>;

  const char* key;
  /// Stands for a missing key, and has the setting's type.
  Value absent;
  /// The largest integer or real; the smallest is 0.
  std::int64_t largest;
  /// The values that are allowed, as a noun phrase.
  const char* expected;
  /// What the setting is for. A choice has a meaning for each of its values 0, 1, 2.
  std::vector<const char*> meanings;

  bool isChoice() const { return meanings.size() > 1; }
  /// All meanings, separated by semicolons.
  std::string meaning() const;

  /// The value in force.
  Value value(const SettingsSuite& suite) const;
  /// Reads a value from text, independent of the locale. Refuses what is not exactly an allowed value.
  Result<Value> parse(const std::string& given) const;
  /// Why that text is refused.
  Failure refusal(const std::string& given) const;
  void set(SettingsSuite& suite, const Value& value) const;
};

/// The value as `Setting::parse` reads it.
std::string textOf(const Setting::Value& value);

const std::vector<Setting>& allSettings();
/// Fails, with a list of the keys, if there is no such setting.
Result<Setting> findSetting(const std::string& key);
/// The value in force of a setting of the table, whose type is `Type`.
template <typename Type>
Type valueInForce(const SettingsSuite& suite, const char* key) {
  return std::get<Type>(findSetting(key)->value(suite));
}
/// The settings as a table for the help.
std::string settingsHelp();

}  // namespace quilex
