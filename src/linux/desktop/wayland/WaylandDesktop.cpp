#include "linux/desktop/wayland/WaylandDesktop.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <optional>
#include <utility>

#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/desktop/wayland/WaylandEglWindows.h"
#include "linux/desktop/wayland/WaylandShmRenderer.h"
#include "linux/desktop/wayland/WaylandTargets.h"
#include "linux/desktop/wayland/WaylandWindowServer.h"

namespace quilex {

namespace {

class WaylandDesktop : public Desktop {
 public:
  explicit WaylandDesktop(std::unique_ptr<WaylandConnection> opened) : wayland_(std::move(opened)) {}

  const char* kind() const override { return "wayland"; }
  const char* toolkitPlugin() const override { return "wayland"; }
  const char* serverName() const override { return "the Wayland compositor"; }
  int connection() const override { return wl_display_get_fd(wayland_->display()); }
  std::vector<DisplayStatus> displays() const override {
    std::vector<DisplayStatus> found;
    for (const auto& output : wayland_->outputs()) {
      if (output->isKnown()) {
        found.push_back({output->name(), output->frame(), output->horizontalScale(), output->refreshRate()});
      }
    }
    return found;
  }
  void start(std::function<void()> lost) override { wayland_->start(std::move(lost)); }
  std::unique_ptr<Renderer> makeGpuRenderer(Rasteriser allowed, std::string& refusal) override {
    return GpuRenderer::make(EGL_PLATFORM_WAYLAND_KHR, wayland_->display(), std::nullopt,
                             {MPV_RENDER_PARAM_WL_DISPLAY, wayland_->display()}, allowed, refusal,
                             std::make_unique<WaylandEglWindows>(targets_));
  }
  std::unique_ptr<Renderer> makeCpuRenderer() override {
    return std::make_unique<WaylandShmRenderer>(*wayland_, targets_);
  }
  std::unique_ptr<WindowServer> makeWindowServer(VideoOutput& output, Renderer& renderer, RunLoop& loop) override {
    return std::make_unique<WaylandWindowServer>(*wayland_, targets_, output, renderer, loop);
  }
  // Windows cannot be embedded there.
  EmbeddingTray embeddingTray() override { return {}; }

 private:
  std::unique_ptr<WaylandConnection> wayland_;
  WaylandTargets targets_;
};

}  // namespace

std::unique_ptr<Desktop> openWaylandDesktop(std::string& refusal) {
  auto wayland = WaylandConnection::open(refusal);
  return wayland ? std::make_unique<WaylandDesktop>(std::move(wayland)) : nullptr;
}

}  // namespace quilex
