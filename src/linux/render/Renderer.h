#pragma once

#include <functional>
#include <memory>
#include <string>

#include "linux/render/MpvHandles.h"
#include "linux/render/Pixels.h"

namespace quilex {

/// All that a renderer holds for one window. It must be destroyed before the window and before the renderer. Each
/// renderer has a function `makeTarget`, which takes a window as its window system knows it. Main thread.
class RenderTarget {
 public:
  RenderTarget() = default;
  virtual ~RenderTarget() = default;
  RenderTarget(const RenderTarget&) = delete;
  RenderTarget& operator=(const RenderTarget&) = delete;
};

/// The current frame at one size, shared by all windows that show parts of it. The renderer must outlive it. Main
/// thread.
class Picture {
 public:
  virtual ~Picture() = default;
  /// Draws the core's next frame if there is one, else its current frame again. False, with the picture as it was, when
  /// the display still reads all memory there is for it; false also when drawing fails.
  virtual bool draw(mpv_render_context* context) = 0;
  /// Shows a part at the top left corner of a window. The target must be of the same renderer.
  virtual void show(RenderTarget& target, const PixelRect& part) = 0;
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
  /// The GPU and its driver, as the driver calls them; empty where the CPU draws.
  virtual std::string device() const { return {}; }
  virtual std::unique_ptr<Picture> makePicture(PixelSize size) = 0;
  /// Whether the driver has lost everything that was made and drawn, as after a reset of the GPU.
  virtual bool isLost() const { return false; }
  /// Makes the renderer work again after a loss; false while that is not possible yet. `letGo` is called when it is: it
  /// must destroy all pictures and render contexts. Targets stay.
  virtual bool restore(const std::function<void()>& /*letGo*/) { return true; }
};

}  // namespace quilex
