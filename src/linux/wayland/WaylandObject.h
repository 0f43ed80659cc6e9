#pragma once

#include <memory>
#include <viewporter.h>
#include <wayland-client.h>
#include <wayland-cursor.h>
#include <xdg-output-unstable-v1.h>

// A parameter of the generated code has the name of a keyword.
#define namespace name_space
#include <wlr-layer-shell-unstable-v1.h>
#undef namespace

namespace quilex {

/// Destroys an object of the protocol by its own request.
template <auto destroy>
struct WaylandDestroyer {
  template <typename Type>
  void operator()(Type* object) const {
    destroy(object);
  }
};

/// Owns an object of the protocol; the connection must outlive it.
template <typename Type, auto destroy>
using WaylandObject = std::unique_ptr<Type, WaylandDestroyer<destroy>>;

using WaylandBuffer = WaylandObject<wl_buffer, wl_buffer_destroy>;
using WaylandCallback = WaylandObject<wl_callback, wl_callback_destroy>;
using WaylandSurface = WaylandObject<wl_surface, wl_surface_destroy>;
using WaylandViewport = WaylandObject<wp_viewport, wp_viewport_destroy>;

}  // namespace quilex
