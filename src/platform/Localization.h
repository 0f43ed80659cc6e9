#pragma once

#include <functional>
#include <string>

namespace quilex {

/// Looks a visible text up in the user's language by its English text and the comment for translators, which tells
/// equal texts apart; answers the English text where there is no translation.
using Localize = std::function<std::string(const char* english, const char* comment)>;

}  // namespace quilex
