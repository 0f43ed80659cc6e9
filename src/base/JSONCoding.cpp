#include "base/JSONCoding.h"

#include <cmath>
#include <limits>

namespace quilex::json {

std::optional<nlohmann::json> parse(std::string_view text) {
  bool tooLarge = false;
  int values = 0;
  const auto keep = [&](int depth, nlohmann::json::parse_event_t event, nlohmann::json& /*parsed*/) {
    using Event = nlohmann::json::parse_event_t;
    const bool opens = event == Event::object_start || event == Event::array_start;
    values += opens || event == Event::value ? 1 : 0;
    tooLarge |= (opens && depth >= kMaximumDepth) || values > kMaximumValues;
    // Values that are not kept take no memory, and their destruction does not recurse.
    return !tooLarge;
  };
  auto json = nlohmann::json::parse(text, keep, false);
  if (tooLarge || json.is_discarded()) {
    return {};
  }
  return json;
}

std::optional<std::int64_t> wholeNumber(const nlohmann::json& json) {
  if (json.is_number_unsigned()) {
    const auto number = json.get<std::uint64_t>();
    if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      return {};
    }
    return static_cast<std::int64_t>(number);
  }
  if (json.is_number_integer()) {
    return json.get<std::int64_t>();
  }
  if (json.is_number_float()) {
    constexpr double kLimit = 0x1p63;
    const double number = json.get<double>();
    if (std::trunc(number) == number && number >= -kLimit && number < kLimit) {
      return static_cast<std::int64_t>(number);
    }
  }
  return {};
}

ReadingError detail::within(const std::string& key, ReadingError error) {
  if (error) {
    error->codingPath = error->codingPath.empty() ? key : key + "." + error->codingPath;
  }
  return error;
}

ReadingError Coder<std::int64_t>::read(const nlohmann::json& json, std::int64_t& value) {
  const auto number = wholeNumber(json);
  if (!number) {
    return DecodingError{DecodingError::Kind::typeMismatch, {}};
  }
  value = *number;
  return {};
}

ReadingError Coder<std::string>::read(const nlohmann::json& json, std::string& value) {
  if (!json.is_string()) {
    return DecodingError{DecodingError::Kind::typeMismatch, {}};
  }
  value = json.get<std::string>();
  return {};
}

}  // namespace quilex::json
