#pragma once

#include <functional>
#include <memory>

#include "linux/qt/QtStatusItem.h"
#include "linux/render/GpuRenderer.h"
#include "linux/render/VideoOutput.h"
#include "platform/RunLoop.h"
#include "platform/WindowServer.h"

namespace quilex {

/// The window system that the agent plays on, and what the agent builds over it. Main thread.
class Desktop {
 public:
  Desktop() = default;
  virtual ~Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// The desktop of this session: a Wayland compositor with a layer shell, else an X server, be it that of a Wayland
  /// compositor; empty when there is neither. Blocks until the server has answered.
  static std::unique_ptr<Desktop> open();

  /// The name of the toolkit's plugin for the window system.
  virtual const char* toolkitPlugin() const = 0;
  /// As a person calls the server.
  virtual const char* serverName() const = 0;
  /// Starts to follow the server; `lost` is called once when it goes away.
  virtual void start(std::function<void()> lost) = 0;
  /// Empty when the display has no EGL with OpenGL ES 3, or not of the kind that is allowed.
  virtual std::unique_ptr<Renderer> makeGpuRenderer(Rasteriser allowed) = 0;
  virtual std::unique_ptr<Renderer> makeCpuRenderer() = 0;
  /// Everything given must outlive the window server, and so must the desktop.
  virtual std::unique_ptr<WindowServer> makeWindowServer(VideoOutput& output, Renderer& renderer, RunLoop& loop) = 0;
  virtual EmbeddingTray embeddingTray() = 0;
};

/// Each empty when its window system is not there.
std::unique_ptr<Desktop> openWaylandDesktop();
std::unique_ptr<Desktop> openX11Desktop();

}  // namespace quilex
