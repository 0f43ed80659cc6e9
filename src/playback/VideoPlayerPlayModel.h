#pragma once

#include <cstdint>

namespace quilex {

/// What follows the video that has ended: itself, the next of the library, or the next of a shuffled library. The raw
/// values are stored in the settings.
enum class VideoPlayerPlayModel : std::int64_t { single = 0, list = 1, random = 2 };

/// The model of a raw value; one that no model has means `single`.
constexpr VideoPlayerPlayModel playModelFromRawValue(std::int64_t raw) {
  return raw >= 0 && raw <= 2 ? static_cast<VideoPlayerPlayModel>(raw) : VideoPlayerPlayModel::single;
}

}  // namespace quilex
