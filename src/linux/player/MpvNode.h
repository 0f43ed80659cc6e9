#pragma once

#include <mpv/client.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace quilex {

/// Pairs of name and text: the arguments of a command, or the options of a file.
using MpvTexts = std::vector<std::pair<std::string, std::string>>;

/// The core's number for the item that a "loadfile" command has added, from the command's result; 0 if it has none.
std::int64_t playlistEntryOf(const mpv_node& result);

/// Sends a command with named arguments: their names are the same in all versions of the core, their order is not.
/// `options`, if any, become the argument "options". The reply carries `id`.
void commandAsync(mpv_handle* core, std::uint64_t id, const MpvTexts& arguments, const MpvTexts& options = {});

}  // namespace quilex
