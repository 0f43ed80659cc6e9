#pragma once

#include <cstdint>

namespace quilex {

/// How the screens are used: together for one picture, each for the whole picture, or one screen only. The raw values
/// are stored in the settings.
enum class VideoPlayerScreenType : std::int64_t { combo = 0, dynamic = 1, lonely = 2 };

/// The type of a raw value found in the settings at start; one that no type has means `dynamic`.
constexpr VideoPlayerScreenType screenTypeAtStart(std::int64_t raw) {
  return raw == 0 || raw == 2 ? static_cast<VideoPlayerScreenType>(raw) : VideoPlayerScreenType::dynamic;
}

/// The type of a raw value that the settings change to later; one that no type has means `lonely`.
constexpr VideoPlayerScreenType screenTypeOnChange(std::int64_t raw) {
  return raw == 0 || raw == 1 ? static_cast<VideoPlayerScreenType>(raw) : VideoPlayerScreenType::lonely;
}

}  // namespace quilex
