#pragma once

#include <cstdint>
#include <map>

#include "linux/desktop/x11/X11Connection.h"
#include "linux/render/Renderer.h"

namespace quilex {

/// The CPU renderer on X11. Pictures are in memory shared with the server (MIT-SHM 1.2), or sent to it where the server
/// cannot share memory with this process.
class X11ShmRenderer : public Renderer {
 public:
  /// The connection must outlive the renderer.
  explicit X11ShmRenderer(X11Connection& x11);

  static std::unique_ptr<RenderTarget> makeTarget(xcb_window_t window);
  MpvRenderContext makeContext(mpv_handle* core) override;
  std::unique_ptr<Picture> makePicture(PixelSize size) override;

 private:
  friend class X11ShmPicture;

  void handle(const xcb_generic_event_t& event);

  X11Connection& x11_;
  XcbGraphicsContext graphics_;
  bool shares_ = false;
  std::uint8_t firstShmEvent_ = 0;
  std::uint8_t shmOpcode_ = 0;
  /// By shared segment: how many requests the server has not completed, so that it may still read the segment.
  std::map<xcb_shm_seg_t, int> reads_;
  Disposable events_;
};

}  // namespace quilex
