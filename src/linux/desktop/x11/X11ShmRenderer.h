#pragma once

#include <cstdint>
#include <map>

#include "linux/desktop/x11/X11Connection.h"
#include "linux/render/Renderer.h"

namespace quilex {

/// The CPU renderer on X11: pictures in memory shared with the server (MIT-SHM 1.2), or sent to it where the server
/// cannot share memory with this process.
class X11ShmRenderer : public Renderer {
 public:
  /// The connection must outlive the renderer.
  explicit X11ShmRenderer(X11Connection& x11);
  ~X11ShmRenderer() override;

  MpvRenderContext makeContext(mpv_handle* core) override;
  std::unique_ptr<Picture> makePicture(PixelSize size) override;
  void forget(NativeWindow /*window*/) override {}

 private:
  friend class X11ShmPicture;

  /// Counts, for each shared segment, the requests that the server has not finished reading for.
  using Reads = std::map<std::uint32_t, int>;

  X11Connection& connection;
  std::uint32_t context;  // the X graphics context
  bool shares = false;
  std::uint8_t firstShmEvent = 0;
  std::uint8_t shmOpcode = 0;
  Reads reads;
  Disposable events;
};

}  // namespace quilex
