#include "linux/desktop/wayland/WaylandEglWindow.h"

#include <utility>

#include "linux/desktop/wayland/WaylandObject.h"

// After EGL's header, in which it would change the type of windows.
#include <wayland-egl-core.h>

namespace quilex {

namespace {

struct Destroyer {
  void operator()(wl_egl_window* window) const { wl_egl_window_destroy(window); }
};

class WaylandEglWindow : public EglWindow {
 public:
  WaylandEglWindow(wl_surface* surface, std::function<void()> aboutToShow)
      : surface_(surface), aboutToShow_(std::move(aboutToShow)) {}

  EGLNativeWindowType sized(PixelSize size) override {
    if (window_) {
      wl_egl_window_resize(window_.get(), size.width, size.height, 0, 0);
    } else {
      window_.reset(wl_egl_window_create(surface_, size.width, size.height));
    }
    return reinterpret_cast<EGLNativeWindowType>(window_.get());
  }
  void willShow() override { aboutToShow_(); }
  // The request for a frame callback takes effect with a commit, which EGL did not make.
  void wasNotShown() override { wl_surface_commit(surface_); }

 private:
  wl_surface* surface_;
  std::function<void()> aboutToShow_;
  std::unique_ptr<wl_egl_window, Destroyer> window_;
};

}  // namespace

std::unique_ptr<EglWindow> makeWaylandEglWindow(wl_surface* surface, std::function<void()> aboutToShow) {
  return std::make_unique<WaylandEglWindow>(surface, std::move(aboutToShow));
}

}  // namespace quilex
