#pragma once

#include <map>
#include <memory>

#include "linux/desktop/wayland/WaylandTargets.h"
#include "linux/render/GpuRenderer.h"

struct wl_egl_window;

namespace quilex {

/// The surfaces of the agent's windows, as EGL takes them.
class WaylandEglWindows : public EglWindows {
 public:
  /// The targets must outlive the instance.
  explicit WaylandEglWindows(const WaylandTargets& theTargets) : targets_(theTargets) {}

  EGLNativeWindowType sized(NativeWindow window, PixelSize size) override;
  void willShow(NativeWindow window) override;
  void wasNotShown(NativeWindow window) override;
  void forget(NativeWindow window) override { windows_.erase(window); }

 private:
  struct Destroyer {
    void operator()(wl_egl_window* window) const;
  };

  const WaylandTargets& targets_;
  std::map<NativeWindow, std::unique_ptr<wl_egl_window, Destroyer>> windows_;
};

}  // namespace quilex
