#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <tuple>
#include <variant>

namespace quilex::json {

/// Why a JSON value is not the record that was asked for.
struct DecodingError {
  enum class Kind { keyNotFound, valueNotFound, typeMismatch };
  Kind kind;
  /// The keys from the outermost object to the place of the error, joined by points.
  std::string codingPath;

  bool operator==(const DecodingError&) const = default;
};

/// The value, or the first error in the order of the record's declaration.
template <typename Value>
using Decoded = std::variant<Value, DecodingError>;

/// One member of a record, named once: its JSON key and where it is kept.
template <typename Record, typename Value>
struct Field {
  const char* key;
  Value Record::*member;
};

namespace detail {

bool read(const nlohmann::json& json, std::int64_t& value);
bool read(const nlohmann::json& json, std::string& value);

}  // namespace detail

/// Decodes the object by its fields, every one required and of exactly its type; unknown keys are ignored.
template <typename Record, typename... Fields>
Decoded<Record> decode(const nlohmann::json& object, const std::tuple<Fields...>& fields) {
  using Kind = DecodingError::Kind;
  if (!object.is_object()) {
    return DecodingError{object.is_null() ? Kind::valueNotFound : Kind::typeMismatch, {}};
  }
  Record record;
  std::optional<DecodingError> error;
  const auto decodeField = [&](const auto& field) {
    const auto entry = object.find(field.key);
    if (entry == object.end()) {
      error = DecodingError{Kind::keyNotFound, field.key};
    } else if (entry->is_null()) {
      error = DecodingError{Kind::valueNotFound, field.key};
    } else if (!detail::read(*entry, record.*field.member)) {
      error = DecodingError{Kind::typeMismatch, field.key};
    }
    return !error;
  };
  std::apply([&](const auto&... field) { (void)(decodeField(field) && ...); }, fields);
  if (error) {
    return *error;
  }
  return record;
}

/// Encodes the record as an object with its keys in the order of the fields.
template <typename Record, typename... Fields>
nlohmann::ordered_json encode(const Record& record, const std::tuple<Fields...>& fields) {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  std::apply([&](const auto&... field) { ((object[field.key] = record.*field.member), ...); }, fields);
  return object;
}

}  // namespace quilex::json
