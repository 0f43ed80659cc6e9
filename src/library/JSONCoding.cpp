#include "library/JSONCoding.h"

#include <cmath>
#include <limits>

namespace quilex::json::detail {

bool read(const nlohmann::json& json, std::int64_t& value) {
  if (json.is_number_unsigned()) {
    const auto number = json.get<std::uint64_t>();
    value = static_cast<std::int64_t>(number);
    return number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  }
  if (json.is_number_integer()) {
    value = json.get<std::int64_t>();
    return true;
  }
  if (json.is_number_float()) {
    // JSON does not tell 3.0 and 1e2 from whole numbers.
    constexpr double kLimit = 0x1p63;
    const double number = json.get<double>();
    if (std::trunc(number) != number || number < -kLimit || number >= kLimit) {
      return false;
    }
    value = static_cast<std::int64_t>(number);
    return true;
  }
  return false;
}

bool read(const nlohmann::json& json, std::string& value) {
  if (!json.is_string()) {
    return false;
  }
  value = json.get<std::string>();
  return true;
}

}  // namespace quilex::json::detail
