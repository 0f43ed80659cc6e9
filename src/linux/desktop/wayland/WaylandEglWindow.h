#pragma once

#include <functional>
#include <memory>

#include "linux/render/GpuRenderer.h"

struct wl_surface;

namespace quilex {

/// The window that EGL draws into for a surface, which must outlive it. `aboutToShow` is called before each commit of a
/// picture.
std::unique_ptr<EglWindow> makeWaylandEglWindow(wl_surface* surface, std::function<void()> aboutToShow);

}  // namespace quilex
