#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/ObserverList.h"
#include "base/Result.h"
#include "linux/desktop/EmbeddingTray.h"
#include "linux/desktop/WindowExtent.h"
#include "linux/render/GpuRenderer.h"
#include "linux/render/VideoOutput.h"
#include "platform/AgentStatus.h"
#include "platform/RunLoop.h"
#include "platform/StandstillReason.h"
#include "platform/WindowServer.h"

namespace quilex {

/// The window system that the agent plays on. Makes the renderers and the window server that go with it. Main thread.
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
  /// The server, as messages to the user call it.
  virtual const char* serverName() const = 0;
  /// The socket to the server, which is open as long as the desktop exists.
  virtual int connection() const = 0;
  /// Starts reading events from the server; `lost` is called once when it goes away.
  virtual void start(std::function<void()> lost) = 0;
  /// How the wallpaper stands on the desktop, in plain English, such as "bottom layer"; empty if not known yet.
  virtual std::string placement() const = 0;
  /// What the person can do if the desktop hides it, in plain English; else empty.
  virtual std::string placementAdvice() const { return {}; }
  /// Notifies when one of them may have changed.
  [[nodiscard]] Disposable observePlacement(std::function<void()> handler) {
    return placementObservers_.add(std::move(handler));
  }
  /// The monitors that are on. On X11 this blocks until the server has answered.
  virtual std::vector<DisplayStatus> displays() const = 0;
  /// Fails when the display has no EGL with OpenGL ES 3, or only a rasteriser that is not allowed. The desktop must
  /// outlive its renderers.
  virtual Result<std::unique_ptr<Renderer>> makeGpuRenderer(Rasteriser allowed) = 0;
  virtual std::unique_ptr<Renderer> makeCpuRenderer() = 0;
  /// The windows have their targets from the renderer that was made last, which `output` must own. The desktop and
  /// everything given must outlive the window server.
  virtual std::unique_ptr<WindowServer> makeWindowServer(VideoOutput& output, RunLoop& loop) = 0;
  virtual EmbeddingTray embeddingTray() = 0;
  /// What the server knows of besides windows. The desktop must outlive the tokens of the watches.
  virtual std::vector<StandstillReason> standstillReasons() = 0;
  /// Notifies, as StandstillReason::watch does, whether another program's window of that extent is on any monitor;
  /// never on desktops that do not say so. Desktop and loop must outlive the token.
  [[nodiscard]] virtual Disposable watchWindows(WindowExtent extent, RunLoop& loop,
                                                StandstillReason::Handler handler) = 0;

 protected:
  void placementChanged() const { placementObservers_.notify(); }

 private:
  ObserverList<> placementObservers_;
};

}  // namespace quilex
