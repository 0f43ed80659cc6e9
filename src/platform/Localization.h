#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quilex {

/// Translates a visible text into the user's language. The comment is for translators, and tells equal texts apart.
/// Without a translation the result is the English text.
using Localize = std::function<std::string(const char* english, const char* comment)>;

/// The format with the value in place of "%@"; the format itself if a translation has lost that.
inline std::string filled(std::string format, std::string_view value) {
  constexpr std::string_view kPlace = "%@";
  const auto place = format.find(kPlace);
  return place == std::string::npos ? format : format.replace(place, kPlace.size(), value);
}

}  // namespace quilex

/// Names, for the tool that collects the texts for translators, the context of all texts of the class it stands in.
#define QUILEX_TEXTS_FILED_UNDER(context) static_assert(true)
