#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "companion/Result.h"
#include "platform/SettingsSuite.h"

namespace quilex {

/// One setting, for showing it and for reading it from text.
struct Setting {
  enum class Type { integer, real, boolean, text };

  const char* key;
  Type type;
  /// What stands for a missing key.
  std::string absent;
  /// The largest integer or real; the smallest is 0.
  std::int64_t largest;
  /// The values that are allowed, as a noun phrase.
  const char* expected;
  /// What the setting is for; of an integer with few values the meanings of 0, 1, 2, set apart by semicolons.
  const char* meaning;

  /// The value in force, as `set` would be given it.
  std::string value(const SettingsSuite& suite) const;
  /// What that integer means; empty where it has no meaning of its own.
  std::string meaningOf(std::int64_t number) const;
  /// Sets the value given as text, read by no locale's rules. Refuses what is not exactly a value allowed.
  Outcome set(SettingsSuite& suite, const std::string& given) const;
};

const std::vector<Setting>& allSettings();
/// The value in force of the setting with that key, one of the table's.
std::string valueInForce(const SettingsSuite& suite, const char* key);
/// Fails by naming the keys there are.
Result<Setting> findSetting(const std::string& key);
/// The settings as a table for the help.
std::string settingsHelp();

}  // namespace quilex
