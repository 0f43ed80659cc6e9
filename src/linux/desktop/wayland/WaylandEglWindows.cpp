#include "linux/desktop/wayland/WaylandEglWindows.h"

// After EGL's header, which would take the windows for pointers to these.
#include <wayland-egl-core.h>

namespace quilex {

void WaylandEglWindows::Destroyer::operator()(wl_egl_window* window) const {
  wl_egl_window_destroy(window);
}

EGLNativeWindowType WaylandEglWindows::sized(NativeWindow window, PixelSize size) {
  const auto* const target = targets_.find(window);
  if (target == nullptr) {
    return 0;
  }
  auto& known = windows_[window];
  if (known) {
    wl_egl_window_resize(known.get(), size.width, size.height, 0, 0);
  } else {
    known.reset(wl_egl_window_create(target->surface, size.width, size.height));
  }
  return reinterpret_cast<EGLNativeWindowType>(known.get());
}

void WaylandEglWindows::willShow(NativeWindow window) {
  if (const auto* const target = targets_.find(window)) {
    target->aboutToShow();
  }
}

// What the window has asked of the compositor for its next frame takes effect with a commit, which EGL did not make.
void WaylandEglWindows::wasNotShown(NativeWindow window) {
  if (const auto* const target = targets_.find(window)) {
    wl_surface_commit(target->surface);
  }
}

}  // namespace quilex
