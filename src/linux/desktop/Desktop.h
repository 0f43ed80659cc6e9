#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "linux/desktop/EmbeddingTray.h"
#include "linux/render/GpuRenderer.h"
#include "linux/render/VideoOutput.h"
#include "platform/AgentStatus.h"
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

  /// "wayland" or "x11".
  virtual const char* kind() const = 0;

  /// The name of the toolkit's plugin for the window system.
  virtual const char* toolkitPlugin() const = 0;
  /// As a person calls the server.
  virtual const char* serverName() const = 0;
  /// The socket to the server, which is open as long as the desktop exists.
  virtual int connection() const = 0;
  /// Starts to follow the server; `lost` is called once when it goes away.
  virtual void start(std::function<void()> lost) = 0;
  /// The monitors that are on. On X11 the server is asked, which blocks until it has answered.
  virtual std::vector<DisplayStatus> displays() const = 0;
  /// Empty when the display has no EGL with OpenGL ES 3, or not of the kind that is allowed; then `refusal` says why.
  virtual std::unique_ptr<Renderer> makeGpuRenderer(Rasteriser allowed, std::string& refusal) = 0;
  virtual std::unique_ptr<Renderer> makeCpuRenderer() = 0;
  /// Everything given must outlive the window server, and so must the desktop.
  virtual std::unique_ptr<WindowServer> makeWindowServer(VideoOutput& output, Renderer& renderer, RunLoop& loop) = 0;
  virtual EmbeddingTray embeddingTray() = 0;
};

}  // namespace quilex
