#include "linux/desktop/x11/X11Desktop.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <utility>

#include "linux/desktop/x11/X11Connection.h"
#include "linux/desktop/x11/X11Monitors.h"
#include "linux/desktop/x11/X11ShmRenderer.h"
#include "linux/desktop/x11/X11SystemTray.h"
#include "linux/desktop/x11/X11WindowServer.h"

namespace quilex {

namespace {

class X11Desktop : public Desktop {
 public:
  explicit X11Desktop(std::unique_ptr<X11Connection> opened) : x11_(std::move(opened)), systemTray_(*x11_) {}

  const char* kind() const override { return "x11"; }
  const char* toolkitPlugin() const override { return "xcb"; }
  const char* serverName() const override { return "the X server"; }
  int connection() const override { return xcb_get_file_descriptor(x11_->xcb()); }
  std::vector<DisplayStatus> displays() const override { return X11Monitors(*x11_).describe(); }
  void start(std::function<void()> lost) override { x11_->start(std::move(lost)); }
  std::unique_ptr<Renderer> makeGpuRenderer(Rasteriser allowed, std::string& refusal) override {
    return GpuRenderer::make(EGL_PLATFORM_X11_KHR, x11_->display(), static_cast<EGLint>(x11_->visual()),
                             {MPV_RENDER_PARAM_X11_DISPLAY, x11_->display()}, allowed, refusal);
  }
  std::unique_ptr<Renderer> makeCpuRenderer() override { return std::make_unique<X11ShmRenderer>(*x11_); }
  std::unique_ptr<WindowServer> makeWindowServer(VideoOutput& output, Renderer& renderer, RunLoop& loop) override {
    return std::make_unique<X11WindowServer>(*x11_, output, renderer, loop);
  }
  EmbeddingTray embeddingTray() override {
    return {[this] { return systemTray_.isPresent(); },
            [this](std::function<void()> handler) { return systemTray_.observe(std::move(handler)); }};
  }

 private:
  std::unique_ptr<X11Connection> x11_;
  X11SystemTray systemTray_;
};

}  // namespace

std::unique_ptr<Desktop> openX11Desktop() {
  auto x11 = X11Connection::open();
  return x11 ? std::make_unique<X11Desktop>(std::move(x11)) : nullptr;
}

}  // namespace quilex
