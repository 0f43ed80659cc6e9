#pragma once

#include <mpv/client.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace quilex {

/// Texts by name, as libmpv takes the arguments of a command and the options of a file.
using MpvTexts = std::vector<std::pair<std::string, std::string>>;

/// Gives the core a command by the names of its arguments, which are the same in all its versions while their places
/// are not. `options`, if any, are the argument of that name. The reply bears `id`.
void commandAsync(mpv_handle* core, std::uint64_t id, const MpvTexts& arguments, const MpvTexts& options = {});

}  // namespace quilex
