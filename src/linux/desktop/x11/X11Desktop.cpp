#include "linux/desktop/x11/X11Desktop.h"

#include <EGL/eglext.h>

#include <utility>

#include "linux/desktop/x11/X11Connection.h"
#include "linux/desktop/x11/X11Coverage.h"
#include "linux/desktop/x11/X11Monitors.h"
#include "linux/desktop/x11/X11ScreenSaver.h"
#include "linux/desktop/x11/X11ShmRenderer.h"
#include "linux/desktop/x11/X11SystemTray.h"
#include "linux/desktop/x11/X11WindowServer.h"

namespace quilex {

namespace {

class X11EglWindow : public EglWindow {
 public:
  explicit X11EglWindow(xcb_window_t window) : window_(window) {}
  EGLNativeWindowType sized(PixelSize /*size*/) override { return EGLNativeWindowType{window_}; }

 private:
  xcb_window_t window_;
};

class X11Desktop : public Desktop {
 public:
  explicit X11Desktop(std::unique_ptr<X11Connection> x11) : x11_(std::move(x11)), systemTray_(*x11_) {}

  const char* kind() const override { return "x11"; }
  const char* toolkitPlugin() const override { return "xcb"; }
  const char* serverName() const override { return "the X server"; }
  int connection() const override { return xcb_get_file_descriptor(x11_->xcb()); }
  std::string placement() const override { return placement_.description; }
  std::string placementAdvice() const override { return placement_.advice; }
  std::vector<DisplayStatus> displays() const override { return X11Monitors(*x11_).describe(); }
  void start(std::function<void()> lost) override { x11_->start(std::move(lost)); }
  Result<std::unique_ptr<Renderer>> makeGpuRenderer(Rasteriser allowed) override {
    auto made = GpuRenderer::make({EGL_PLATFORM_X11_KHR,
                                   x11_->xlib(),
                                   static_cast<EGLint>(x11_->visual()),
                                   {MPV_RENDER_PARAM_X11_DISPLAY, x11_->xlib()}},
                                  allowed);
    if (made) {
      makeTarget_ = [renderer = made->get()](xcb_window_t window) {
        return renderer->makeTarget(std::make_unique<X11EglWindow>(window));
      };
    }
    return made;
  }
  std::unique_ptr<Renderer> makeCpuRenderer() override {
    makeTarget_ = X11ShmRenderer::makeTarget;
    return std::make_unique<X11ShmRenderer>(*x11_);
  }
  std::unique_ptr<WindowServer> makeWindowServer(VideoOutput& output, RunLoop& loop) override {
    return std::make_unique<X11WindowServer>(*x11_, output, makeTarget_, loop, [this](const Placement& placement) {
      placement_ = placement;
      placementChanged();
    });
  }
  EmbeddingTray embeddingTray() override {
    return {[this] { return systemTray_.isPresent(); },
            [this](std::function<void()> handler) { return systemTray_.observe(std::move(handler)); }};
  }
  std::vector<StandstillReason> standstillReasons() override {
    return {{"the screen is off",
             [this](StandstillReason::Handler handler) { return watchScreenOff(*x11_, std::move(handler)); }}};
  }
  Disposable watchWindows(WindowExtent extent, RunLoop& loop, StandstillReason::Handler handler) override {
    return watchX11Windows(*x11_, extent, loop, std::move(handler));
  }

 private:
  std::unique_ptr<X11Connection> x11_;
  X11SystemTray systemTray_;
  Placement placement_;
  /// Of the renderer that was made last.
  MakeX11Target makeTarget_;
};

}  // namespace

Result<std::unique_ptr<Desktop>> openX11Desktop() {
  return X11Connection::open().map(
      [](auto x11) -> std::unique_ptr<Desktop> { return std::make_unique<X11Desktop>(std::move(x11)); });
}

}  // namespace quilex
