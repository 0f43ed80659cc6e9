#pragma once

#include <cstdint>

namespace quilex {

/// How the screens are used: all together for one video, each for the whole video, or one screen only. The raw values
/// are stored in the settings.
enum class VideoPlayerScreenType : std::int64_t { combo = 0, dynamic = 1, lonely = 2 };

/// The type of a raw value in the settings at start; an unknown value means `dynamic`.
constexpr VideoPlayerScreenType screenTypeAtStart(std::int64_t raw) {
  return raw == 0 || raw == 2 ? static_cast<VideoPlayerScreenType>(raw) : VideoPlayerScreenType::dynamic;
}

/// The type of a raw value when the settings change; an unknown value means `lonely`.
constexpr VideoPlayerScreenType screenTypeOnChange(std::int64_t raw) {
  return raw == 0 || raw == 1 ? static_cast<VideoPlayerScreenType>(raw) : VideoPlayerScreenType::lonely;
}

}  // namespace quilex
