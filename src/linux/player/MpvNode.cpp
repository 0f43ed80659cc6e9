#include "linux/player/MpvNode.h"

#include <cstring>

namespace quilex {

namespace {

// Nodes that point into the texts, which must outlive them.
struct TextMap {
  explicit TextMap(const MpvTexts& texts) {
    for (const auto& [name, text] : texts) {
      // libmpv only reads them.
      keys.push_back(const_cast<char*>(name.c_str()));
      mpv_node& value = values.emplace_back();
      value.format = MPV_FORMAT_STRING;
      value.u.string = const_cast<char*>(text.c_str());
    }
  }
  mpv_node node() {
    list = {static_cast<int>(values.size()), values.data(), keys.data()};
    mpv_node map = {};
    map.format = MPV_FORMAT_NODE_MAP;
    map.u.list = &list;
    return map;
  }

  std::vector<char*> keys;
  std::vector<mpv_node> values;
  mpv_node_list list = {};
};

}  // namespace

std::int64_t playlistEntryOf(const mpv_node& result) {
  for (int index = 0; result.format == MPV_FORMAT_NODE_MAP && index < result.u.list->num; ++index) {
    if (std::strcmp(result.u.list->keys[index], "playlist_entry_id") == 0) {
      return result.u.list->values[index].u.int64;
    }
  }
  return 0;
}

void commandAsync(mpv_handle* core, std::uint64_t id, const MpvTexts& arguments, const MpvTexts& options) {
  TextMap command(arguments);
  TextMap optionMap(options);
  if (!options.empty()) {
    command.keys.push_back(const_cast<char*>("options"));
    command.values.push_back(optionMap.node());
  }
  mpv_node node = command.node();
  mpv_command_node_async(core, id, &node);
}

}  // namespace quilex
