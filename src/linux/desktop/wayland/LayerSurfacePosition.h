#pragma once

#include <functional>

#include "linux/desktop/wayland/WaylandConnection.h"

namespace quilex {

/// Finds where on its output a layer surface is, which the layer shell does not say. A popup of the surface that would
/// lie beyond the output's upper left corner is moved into that corner (xdg_positioner's slide), and the compositor
/// answers with its position, without the popup ever being shown. Main thread.
class LayerSurfacePosition {
 public:
  /// `answered` is called with the surface's position on the output, unless the compositor has no xdg_wm_base; it may
  /// destroy this object. The surface must be configured, and outlive this object.
  LayerSurfacePosition(WaylandConnection& connection, zwlr_layer_surface_v1* surface,
                       std::function<void(double x, double y)> answered);
  LayerSurfacePosition(const LayerSurfacePosition&) = delete;
  LayerSurfacePosition& operator=(const LayerSurfacePosition&) = delete;

 private:
  static const xdg_popup_listener popupListener;

  std::function<void(double x, double y)> answered_;
  WaylandObject<wl_surface> surface_;
  WaylandObject<xdg_surface> shellSurface_;
  WaylandObject<xdg_popup> popup_;
};

}  // namespace quilex
