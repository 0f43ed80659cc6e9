#pragma once

#include "linux/render/MpvHandles.h"

namespace quilex {

/// A core of the player library with all options that do not depend on a renderer or an item. It opens nothing by
/// itself, has no user interface and starts paused. Sets LC_NUMERIC to "C". When no core can be made the process stops.
MpvHandle makeMpvCore();

}  // namespace quilex
