#include "linux/desktop/wayland/LayerSurfacePosition.h"

#include <utility>

namespace quilex {

namespace {

// Larger than any output.
constexpr std::int32_t kFarAway = 100000;

}  // namespace

const xdg_popup_listener LayerSurfacePosition::popupListener = [] {
  xdg_popup_listener events{};
  events.configure = [](void* data, xdg_popup*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t) {
    // Called from a copy, since it may destroy this object.
    if (const auto answered = std::exchange(listener<LayerSurfacePosition>(data).answered_, {})) {
      answered(-x, -y);
    }
  };
  events.popup_done = [](void*, xdg_popup*) {};
  return events;
}();

LayerSurfacePosition::LayerSurfacePosition(WaylandConnection& connection, zwlr_layer_surface_v1* surface,
                                           std::function<void(double x, double y)> answered)
    : answered_(std::move(answered)) {
  if (connection.shell() == nullptr) {
    return;
  }
  const WaylandObject<xdg_positioner> positioner(xdg_wm_base_create_positioner(connection.shell()));
  xdg_positioner_set_size(positioner.get(), 1, 1);
  xdg_positioner_set_anchor_rect(positioner.get(), 0, 0, 1, 1);
  xdg_positioner_set_anchor(positioner.get(), XDG_POSITIONER_ANCHOR_TOP_LEFT);
  xdg_positioner_set_gravity(positioner.get(), XDG_POSITIONER_GRAVITY_BOTTOM_RIGHT);
  xdg_positioner_set_offset(positioner.get(), -kFarAway, -kFarAway);
  xdg_positioner_set_constraint_adjustment(
      positioner.get(), XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_X | XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_Y);
  surface_.reset(wl_compositor_create_surface(connection.compositor()));
  shellSurface_.reset(xdg_wm_base_get_xdg_surface(connection.shell(), surface_.get()));
  popup_.reset(xdg_surface_get_popup(shellSurface_.get(), nullptr, positioner.get()));
  xdg_popup_add_listener(popup_.get(), &popupListener, this);
  zwlr_layer_surface_v1_get_popup(surface, popup_.get());
  wl_surface_commit(surface_.get());
  connection.flush();
}

}  // namespace quilex
