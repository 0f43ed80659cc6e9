#pragma once

#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/desktop/wayland/WaylandTargets.h"
#include "linux/render/Renderer.h"

namespace quilex {

class WaylandShmPicture;

/// The CPU renderer on Wayland: pictures in memory shared with the compositor.
class WaylandShmRenderer : public Renderer {
 public:
  /// Everything given must outlive the renderer.
  WaylandShmRenderer(WaylandConnection& theConnection, WaylandTargets& theTargets)
      : connection_(theConnection), targets_(theTargets) {}

  MpvRenderContext makeContext(mpv_handle* core) override;
  std::unique_ptr<Picture> makePicture(PixelSize size) override;
  void forget(NativeWindow window) override;

 private:
  friend class WaylandShmPicture;

  WaylandConnection& connection_;
  WaylandTargets& targets_;
  std::vector<WaylandShmPicture*> pictures_;
};

}  // namespace quilex
