#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/JSONCoding.h"

namespace quilex {

/// A null among dynamic values.
struct JSONNull {
  bool operator==(const JSONNull&) const = default;
};

/// A key of an object whose keys are not known in advance.
struct JSONCodingKey {
  explicit JSONCodingKey(std::string text) : key(std::move(text)) {}
  /// None, because all keys are texts.
  static std::optional<JSONCodingKey> fromInteger(std::int64_t /*index*/) { return {}; }

  const std::string& stringValue() const { return key; }
  std::optional<std::int64_t> intValue() const { return {}; }

  const std::string key;
};

/// A JSON value of any shape. A whole number within 64 bits is an integer, every other number a double.
struct JSONAny {
  using Array = std::vector<JSONAny>;
  using Dictionary = std::map<std::string, JSONAny>;
  using Value = std::variant<JSONNull, bool, std::int64_t, double, std::string, Array, Dictionary>;

  Value value;

  bool operator==(const JSONAny& other) const { return value == other.value; }
};

/// Fails, with its description, for anything but a null.
template <>
struct json::Coder<JSONNull> {
  static constexpr bool acceptsNull = true;
  static ReadingError read(const nlohmann::json& json, JSONNull& value);
  static nlohmann::ordered_json write(const JSONNull& /*value*/) { return nullptr; }
};

/// Accepts every value that a text can hold; a double that is no finite number is written as a null.
template <>
struct json::Coder<JSONAny> {
  static constexpr bool acceptsNull = true;
  static ReadingError read(const nlohmann::json& json, JSONAny& any);
  static nlohmann::ordered_json write(const JSONAny& any);
};

}  // namespace quilex
