#pragma once

#include <functional>
#include <map>
#include <utility>

#include "linux/desktop/wayland/WaylandObject.h"
#include "linux/render/Renderer.h"

namespace quilex {

/// The surfaces that pictures are shown on, by the numbers that renderers know them by. Main thread.
class WaylandTargets {
 public:
  struct Target {
    wl_surface* surface;
    /// To be called before each commit of a picture.
    std::function<void()> aboutToShow;
  };

  /// A number for a surface that is still to come.
  NativeWindow number() { return ++last_; }
  void put(NativeWindow window, Target target) { targets_.insert_or_assign(window, std::move(target)); }
  void remove(NativeWindow window) { targets_.erase(window); }
  /// Nothing while there is no such surface.
  const Target* find(NativeWindow window) const {
    const auto entry = targets_.find(window);
    return entry != targets_.end() ? &entry->second : nullptr;
  }

 private:
  std::map<NativeWindow, Target> targets_;
  NativeWindow last_ = 0;
};

}  // namespace quilex
