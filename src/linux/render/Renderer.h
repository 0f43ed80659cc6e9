#pragma once

#include <mpv/client.h>
#include <mpv/render.h>

#include <compare>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace quilex {

struct PixelSize {
  int width = 0;
  int height = 0;
  // NOLINTNEXTLINE(modernize-use-nullptr): the check takes the comparison's zero for a pointer
  auto operator<=>(const PixelSize&) const = default;
};

/// A rectangle of a picture, from its top left corner.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const PixelRect&) const = default;
};

/// The window system's name for a window.
using NativeWindow = std::uint32_t;

struct MpvRenderContextDestroyer {
  void operator()(mpv_render_context* context) const { mpv_render_context_free(context); }
};

/// Owns the render context of a core, which must be freed before the core.
using MpvRenderContext = std::unique_ptr<mpv_render_context, MpvRenderContextDestroyer>;

/// The current frame at one size, shared by all windows that show parts of it. Main thread.
class Picture {
 public:
  virtual ~Picture() = default;
  /// Draws the core's next frame if there is one, else its current frame again. False, with the picture as it was,
  /// when the display still reads all memory there is for it.
  virtual bool draw(mpv_render_context* context) = 0;
  /// Shows a part at the window's top left corner.
  virtual void show(NativeWindow window, const PixelRect& part) = 0;
};

/// Draws frames and shows them in windows: with the GPU, or with the CPU and shared memory. Main thread.
class Renderer {
 public:
  virtual ~Renderer() = default;
  /// Sets the core's options that go with this renderer and makes its render context; a core that cannot be rendered
  /// stops the process.
  virtual MpvRenderContext makeContext(mpv_handle* core) = 0;
  /// Whether that context turns pictures as the core's option "video-rotate" says. libmpv's software renderer does not:
  /// it stops the process where the turned picture has another shape.
  virtual bool turnsPictures() const { return false; }
  /// What draws, as its driver says it; empty where that is the CPU.
  virtual std::string device() const { return {}; }
  virtual std::unique_ptr<Picture> makePicture(PixelSize size) = 0;
  /// The window is about to be destroyed.
  virtual void forget(NativeWindow window) = 0;
  /// Whether the display's driver has lost all that was drawn and made, as after a reset of the GPU.
  virtual bool isLost() const { return false; }
  /// Makes the renderer work again after a loss, once that can be done; false while it cannot. `letGo` must then
  /// destroy all its pictures and render contexts.
  virtual bool restore(const std::function<void()>& /*letGo*/) { return true; }
};

}  // namespace quilex
