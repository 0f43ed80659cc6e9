#include "playback/ScreenLayout.h"

#include <algorithm>
#include <iterator>

namespace quilex {

std::vector<Screen> chooseScreens(VideoPlayerScreenType type, std::int64_t screenIndex,
                                  const std::vector<Screen>& screens) {
  if (type != VideoPlayerScreenType::lonely || screens.empty()) {
    return screens;
  }
  const bool exists = screenIndex >= 0 && screenIndex < std::ssize(screens);
  return {screens[exists ? static_cast<std::size_t>(screenIndex) : 0]};
}

std::vector<Rect> playerViewRects(VideoPlayerScreenType type, const std::vector<Screen>& screens) {
  double minX = 0;
  double minY = 0;
  double maxX = 0;
  double maxY = 0;
  for (const Screen& screen : screens) {
    minX = std::min(minX, screen.frame.x);
    minY = std::min(minY, screen.frame.y);
    maxX = std::max(maxX, screen.frame.x + screen.frame.width);
    maxY = std::max(maxY, screen.frame.y + screen.frame.height);
  }
  std::vector<Rect> rects;
  rects.reserve(screens.size());
  for (const auto& [name, frame] : screens) {
    if (type == VideoPlayerScreenType::combo) {
      rects.push_back({minX - frame.x, minY - frame.y, maxX - minX, maxY - minY});
    } else {
      rects.push_back({0, 0, frame.width, frame.height});
    }
  }
  return rects;
}

bool needsRelayout(const std::vector<Screen>& covered, const std::vector<Screen>& current) {
  if (covered.size() != current.size()) {
    return true;
  }
  return !std::all_of(current.begin(), current.end(), [&](const Screen& screen) {
    return std::any_of(covered.begin(), covered.end(),
                       [&](const Screen& other) { return other.frame == screen.frame; });
  });
}

}  // namespace quilex
