#pragma once

#include <functional>
#include <memory>

#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/render/Renderer.h"

namespace quilex {

/// The CPU renderer on Wayland: pictures in memory shared with the compositor.
class WaylandShmRenderer : public Renderer {
 public:
  /// The connection must outlive the renderer.
  explicit WaylandShmRenderer(WaylandConnection& connection) : connection_(connection) {}

  /// The surface must outlive its target. `aboutToShow` is called before each commit of a picture.
  static std::unique_ptr<RenderTarget> makeTarget(wl_surface* surface, std::function<void()> aboutToShow);
  MpvRenderContext makeContext(mpv_handle* core) override;
  std::unique_ptr<Picture> makePicture(PixelSize size) override;

 private:
  WaylandConnection& connection_;
};

}  // namespace quilex
