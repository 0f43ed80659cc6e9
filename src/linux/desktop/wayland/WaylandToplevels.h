#pragma once

#include "base/Disposable.h"
#include "linux/desktop/WindowExtent.h"
#include "linux/desktop/wayland/WaylandConnection.h"
#include "platform/StandstillReason.h"

namespace quilex {

/// Notifies as Desktop::watchWindows does, by the protocol wlr-foreign-toplevel-management, which says nothing of
/// workspaces: a window counts on any of them. Without the protocol nothing is notified. The connection must outlive
/// the token.
[[nodiscard]] Disposable watchToplevels(WaylandConnection& connection, WindowExtent extent,
                                        StandstillReason::Handler handler);

}  // namespace quilex
