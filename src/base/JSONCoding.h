#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <tuple>
#include <utility>
#include <vector>

namespace quilex::json {

/// Why a JSON value is not what was asked for.
struct DecodingError {
  enum class Kind { keyNotFound, valueNotFound, typeMismatch };
  Kind kind;
  /// The keys, and the indices into arrays, from the outermost value to the place of the error, joined by points.
  std::string codingPath;
  /// A message from the type that was asked for; most types give none.
  std::string description{};

  bool operator==(const DecodingError&) const = default;
};

/// The value, or the first error in the order of the record's declaration.
template <typename Value>
using Decoded = tl::expected<Value, DecodingError>;

/// One member of a record, named once: its JSON key and where it is kept.
template <typename Record, typename Value>
struct Field {
  const char* key;
  Value Record::*member;
};
template <typename Record, typename Value>
Field(const char*, Value Record::*) -> Field<Record, Value>;

/// A type that names its members once, in the order of their declaration, as a tuple of `Field`.
template <typename Type>
concept Record = requires {
  std::tuple_size<decltype(Type::fields())>::value;
};

/// How deeply arrays and objects may be nested in a text that is parsed, the outermost one counted.
constexpr int kMaximumDepth = 128;

/// How many values a text that is parsed may hold, each entry of an array or object counted. In a text a value can take
/// as little as three bytes, in memory it takes many times that.
constexpr int kMaximumValues = 100'000;

/// Parses a text; nothing when it is malformed, holds too many values or nests them too deeply. Code that walks through
/// the value may recurse.
std::optional<nlohmann::json> parse(std::string_view text);

/// The integer that a number stands for; nothing for a fraction, a number beyond 64 bits, or no number. In JSON, 3.0
/// and 1e2 are whole numbers too.
std::optional<std::int64_t> wholeNumber(const nlohmann::json& json);

/// How the values of a type are read and written; to be specialised for types that are neither records nor listed
/// below. `read` gets no null unless its specialisation has a member `acceptsNull`.
template <typename Value>
struct Coder;

using ReadingError = std::optional<DecodingError>;

namespace detail {

/// Puts the key or index of the value in which the error occurred before its coding path.
ReadingError within(const std::string& key, ReadingError error);

template <typename Value>
ReadingError read(const nlohmann::json& json, Value& value) {
  if constexpr (!requires { Coder<Value>::acceptsNull; }) {
    if (json.is_null()) {
      return DecodingError{DecodingError::Kind::valueNotFound, {}};
    }
  }
  return Coder<Value>::read(json, value);
}

}  // namespace detail

template <>
struct Coder<std::int64_t> {
  static ReadingError read(const nlohmann::json& json, std::int64_t& value);
  static nlohmann::ordered_json write(std::int64_t value) { return value; }
};

template <>
struct Coder<std::string> {
  static ReadingError read(const nlohmann::json& json, std::string& value);
  static nlohmann::ordered_json write(const std::string& value) { return value; }
};

template <typename Element>
struct Coder<std::vector<Element>> {
  static ReadingError read(const nlohmann::json& json, std::vector<Element>& value) {
    if (!json.is_array()) {
      return DecodingError{DecodingError::Kind::typeMismatch, {}};
    }
    value.clear();
    for (const nlohmann::json& element : json) {
      if (auto error = detail::read(element, value.emplace_back())) {
        return detail::within(std::to_string(value.size() - 1), std::move(error));
      }
    }
    return {};
  }
  static nlohmann::ordered_json write(const std::vector<Element>& value) {
    auto array = nlohmann::ordered_json::array();
    for (const Element& element : value) {
      array.push_back(Coder<Element>::write(element));
    }
    return array;
  }
};

/// Every field is required and of exactly its type; unknown keys are ignored. Keys are written in the order of the
/// fields.
template <Record Type>
struct Coder<Type> {
  static ReadingError read(const nlohmann::json& json, Type& value) {
    if (!json.is_object()) {
      return DecodingError{DecodingError::Kind::typeMismatch, {}};
    }
    ReadingError error;
    const auto readField = [&](const auto& field) {
      const auto entry = json.find(field.key);
      if (entry == json.end()) {
        error = DecodingError{DecodingError::Kind::keyNotFound, field.key};
      } else {
        error = detail::within(field.key, detail::read(*entry, value.*field.member));
      }
      return !error;
    };
    std::apply([&](const auto&... field) { (void)(readField(field) && ...); }, Type::fields());
    return error;
  }
  static nlohmann::ordered_json write(const Type& value) {
    auto object = nlohmann::ordered_json::object();
    const auto writeField = [&]<typename Value>(const Field<Type, Value>& field) {
      object[field.key] = Coder<Value>::write(value.*field.member);
    };
    std::apply([&](const auto&... field) { (writeField(field), ...); }, Type::fields());
    return object;
  }
};

template <typename Value>
Decoded<Value> decode(const nlohmann::json& json) {
  Value value{};
  if (auto error = detail::read(json, value)) {
    return tl::unexpected(*std::move(error));
  }
  return value;
}

/// The value that a text stands for; nothing when the text does not parse or is not such a value. Move a large text in:
/// it is then released before the value is made.
template <typename Value>
std::optional<Value> decodeText(std::string text) {
  const auto json = parse(std::exchange(text, {}));
  Value value{};
  if (!json || detail::read(*json, value)) {
    return {};
  }
  return value;
}

template <typename Value>
nlohmann::ordered_json encode(const Value& value) {
  return Coder<Value>::write(value);
}

}  // namespace quilex::json
