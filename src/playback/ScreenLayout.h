#pragma once

#include <cstdint>
#include <vector>

#include "platform/Geometry.h"
#include "platform/WindowServer.h"
#include "playback/VideoPlayerScreenType.h"

namespace quilex {

/// The screens that get a window: for `lonely` the one at `screenIndex`, or the first if there is none at that index;
/// otherwise all of them.
std::vector<Screen> chooseScreens(VideoPlayerScreenType type, std::int64_t screenIndex,
                                  const std::vector<Screen>& screens);

/// The rectangle of the view in each screen's window, in the window's own coordinates. For `combo` every view has the
/// size of the rectangle around all screens and the origin of the desktop's global space, and is shifted so that the
/// part that lies on its screen lies inside its window.
std::vector<Rect> playerViewRects(VideoPlayerScreenType type, const std::vector<Screen>& screens);

/// Whether windows made for the screens `covered` have to be replaced because the screens are now `current`: their
/// number or one of their places differs.
bool needsRelayout(const std::vector<Screen>& covered, const std::vector<Screen>& current);

}  // namespace quilex
