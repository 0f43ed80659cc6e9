#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quilex {

/// Looks a visible text up in the user's language by its English text and the comment for translators, which tells
/// equal texts apart; answers the English text where there is no translation.
using Localize = std::function<std::string(const char* english, const char* comment)>;

/// The format with the value in place of its "%@"; the format itself when a translation has lost that.
inline std::string filled(std::string format, std::string_view value) {
  constexpr std::string_view kPlace = "%@";
  const auto place = format.find(kPlace);
  return place == std::string::npos ? format : format.replace(place, kPlace.size(), value);
}

}  // namespace quilex

/// Stands in each class that looks texts up, for the tool that collects them for the translators: the name under which
/// the texts of the class are filed.
#define QUILEX_TEXTS_FILED_UNDER(context) static_assert(true)
