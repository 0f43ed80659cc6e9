#include "service/JSONAny.h"

namespace quilex::json {

namespace {

ReadingError readDictionary(const nlohmann::json& json, JSONAny::Dictionary& dictionary) {
  for (const auto& [text, element] : json.items()) {
    const JSONCodingKey key(text);
    if (auto error = Coder<JSONAny>::read(element, dictionary[key.stringValue()])) {
      return detail::within(key.stringValue(), std::move(error));
    }
  }
  return {};
}

}  // namespace

ReadingError Coder<JSONNull>::read(const nlohmann::json& json, JSONNull& /*value*/) {
  if (!json.is_null()) {
    return DecodingError{DecodingError::Kind::typeMismatch, {}, "Wrong type for JSONNull"};
  }
  return {};
}

ReadingError Coder<JSONAny>::read(const nlohmann::json& json, JSONAny& any) {
  if (json.is_boolean()) {
    any.value = json.get<bool>();
  } else if (const auto integer = wholeNumber(json)) {
    any.value = *integer;
  } else if (json.is_number()) {
    any.value = json.get<double>();
  } else if (json.is_string()) {
    any.value = json.get<std::string>();
  } else if (json.is_null()) {
    any.value = JSONNull();
  } else if (json.is_array()) {
    return Coder<JSONAny::Array>::read(json, any.value.emplace<JSONAny::Array>());
  } else if (json.is_object()) {
    return readDictionary(json, any.value.emplace<JSONAny::Dictionary>());
  } else {
    return DecodingError{DecodingError::Kind::typeMismatch, {}, "Cannot decode JSONAny"};
  }
  return {};
}

nlohmann::ordered_json Coder<JSONAny>::write(const JSONAny& any) {
  const auto write = [](const auto& value) -> nlohmann::ordered_json {
    using Type = std::decay_t<decltype(value)>;
    if constexpr (std::is_same_v<Type, JSONNull> || std::is_same_v<Type, JSONAny::Array>) {
      return Coder<Type>::write(value);
    } else if constexpr (std::is_same_v<Type, JSONAny::Dictionary>) {
      auto object = nlohmann::ordered_json::object();
      for (const auto& [key, element] : value) {
        object[key] = Coder<JSONAny>::write(element);
      }
      return object;
    } else {
      return value;
    }
  };
  return std::visit(write, any.value);
}

}  // namespace quilex::json
