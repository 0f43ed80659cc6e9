#pragma once

#include <cstdint>
#include <vector>

#include "platform/Geometry.h"
#include "platform/WindowServer.h"
#include "playback/VideoPlayerScreenType.h"

namespace quilex {

/// The screens that carry a window: for `lonely` the one at `screenIndex`, or the first if there is none at that
/// index; otherwise all of them.
std::vector<Screen> chooseScreens(VideoPlayerScreenType type, std::int64_t screenIndex,
                                  const std::vector<Screen>& screens);

/// The frame of the video view in each screen's window, in the window's own coordinates. For `combo` every view has
/// the size of the rectangle that bounds all screens and the origin of the global space, and is shifted so that the
/// part lying on its screen is the part inside its window.
std::vector<Rect> playerViewFrames(VideoPlayerScreenType type, const std::vector<Screen>& screens);

/// Whether windows made for the screens `covered` no longer fit the `current` screens.
bool needsRelayout(const std::vector<Screen>& covered, const std::vector<Screen>& current);

}  // namespace quilex
