#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quilex {

/// A key-value store that other processes read and write too. Main thread.
///
/// Typed reads return the neutral value (0, 0.0, false, none) if the key is absent or holds another type. A value that
/// was set is read back at once, and reaches other processes a moment after `synchronize` at the latest.
class SettingsSuite {
 public:
  virtual ~SettingsSuite() = default;

  virtual bool contains(const std::string& key) const = 0;
  virtual std::int64_t integer(const std::string& key) const = 0;
  virtual float real(const std::string& key) const = 0;
  virtual bool boolean(const std::string& key) const = 0;
  virtual std::optional<std::string> string(const std::string& key) const = 0;

  virtual void setInteger(const std::string& key, std::int64_t value) = 0;
  virtual void setReal(const std::string& key, float value) = 0;
  virtual void setBoolean(const std::string& key, bool value) = 0;
  virtual void setString(const std::string& key, const std::string& value) = 0;
  virtual void remove(const std::string& key) = 0;

  /// Exchanges changes with the store now. What cannot be written is tried again later.
  virtual void synchronize() = 0;
};

}  // namespace quilex
