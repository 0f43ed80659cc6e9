#pragma once

#include <cstdint>

namespace quilex {

/// Which video follows one that has ended: itself, the next of the library, or the next of the shuffled library. The
/// raw values are stored in the settings.
enum class VideoPlayerPlayModel : std::int64_t { single = 0, list = 1, random = 2 };

/// The model of a raw value; an unknown value means `single`.
constexpr VideoPlayerPlayModel playModelFromRawValue(std::int64_t raw) {
  return raw >= 0 && raw <= 2 ? static_cast<VideoPlayerPlayModel>(raw) : VideoPlayerPlayModel::single;
}

}  // namespace quilex
