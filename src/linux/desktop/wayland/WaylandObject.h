#pragma once

#include <viewporter.h>
#include <wayland-client.h>
#include <wayland-cursor.h>
#include <xdg-output-unstable-v1.h>
#include <xdg-shell.h>

#include <memory>

// A parameter of the generated code has the name of a keyword.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define namespace name_space
#include <wlr-layer-shell-unstable-v1.h>
#undef namespace
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace quilex {

/// Destroys each kind of object by its own request.
struct WaylandDestroyer {
  void operator()(wl_buffer* object) const { wl_buffer_destroy(object); }
  void operator()(wl_callback* object) const { wl_callback_destroy(object); }
  void operator()(wl_compositor* object) const { wl_compositor_destroy(object); }
  void operator()(wl_cursor_theme* object) const { wl_cursor_theme_destroy(object); }
  void operator()(wl_display* object) const { wl_display_disconnect(object); }
  void operator()(wl_output* object) const { wl_output_release(object); }
  void operator()(wl_pointer* object) const { wl_pointer_release(object); }
  void operator()(wl_region* object) const { wl_region_destroy(object); }
  void operator()(wl_registry* object) const { wl_registry_destroy(object); }
  void operator()(wl_seat* object) const { wl_seat_release(object); }
  void operator()(wl_shm* object) const { wl_shm_destroy(object); }
  void operator()(wl_shm_pool* object) const { wl_shm_pool_destroy(object); }
  void operator()(wl_surface* object) const { wl_surface_destroy(object); }
  void operator()(wp_viewport* object) const { wp_viewport_destroy(object); }
  void operator()(wp_viewporter* object) const { wp_viewporter_destroy(object); }
  void operator()(xdg_popup* object) const { xdg_popup_destroy(object); }
  void operator()(xdg_positioner* object) const { xdg_positioner_destroy(object); }
  void operator()(xdg_surface* object) const { xdg_surface_destroy(object); }
  void operator()(xdg_wm_base* object) const { xdg_wm_base_destroy(object); }
  void operator()(zwlr_layer_shell_v1* object) const { zwlr_layer_shell_v1_destroy(object); }
  void operator()(zwlr_layer_surface_v1* object) const { zwlr_layer_surface_v1_destroy(object); }
  void operator()(zxdg_output_manager_v1* object) const { zxdg_output_manager_v1_destroy(object); }
  void operator()(zxdg_output_v1* object) const { zxdg_output_v1_destroy(object); }
};

/// The object that a listener was added for.
template <typename Type>
Type& listener(void* data) {
  return *static_cast<Type*>(data);
}

/// Owns an object of the protocol; the connection must outlive it.
template <typename Type>
using WaylandObject = std::unique_ptr<Type, WaylandDestroyer>;

}  // namespace quilex
