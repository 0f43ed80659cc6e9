#include "linux/desktop/wayland/WaylandDesktop.h"

#include <EGL/eglext.h>

#include <optional>
#include <utility>

#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/desktop/wayland/WaylandEglWindow.h"
#include "linux/desktop/wayland/WaylandShmRenderer.h"
#include "linux/desktop/wayland/WaylandToplevels.h"
#include "linux/desktop/wayland/WaylandWindowServer.h"

namespace quilex {

namespace {

class WaylandDesktop : public Desktop {
 public:
  explicit WaylandDesktop(std::unique_ptr<WaylandConnection> wayland) : wayland_(std::move(wayland)) {}

  const char* kind() const override { return "wayland"; }
  const char* toolkitPlugin() const override { return "wayland"; }
  const char* serverName() const override { return "the Wayland compositor"; }
  int connection() const override { return wl_display_get_fd(wayland_->display()); }
  std::vector<DisplayStatus> displays() const override {
    std::vector<DisplayStatus> found;
    for (const auto& output : wayland_->outputs()) {
      if (output->isKnown()) {
        found.push_back({output->name(), output->place(), output->scale().horizontal, output->refreshRate()});
      }
    }
    return found;
  }
  void start(std::function<void()> lost) override { wayland_->start(std::move(lost)); }
  Result<std::unique_ptr<Renderer>> makeGpuRenderer(Rasteriser allowed) override {
    auto made = GpuRenderer::make({EGL_PLATFORM_WAYLAND_KHR,
                                   wayland_->display(),
                                   std::nullopt,
                                   {MPV_RENDER_PARAM_WL_DISPLAY, wayland_->display()}},
                                  allowed);
    if (made) {
      makeTarget_ = [renderer = made->get()](wl_surface* surface, std::function<void()> aboutToShow) {
        return renderer->makeTarget(makeWaylandEglWindow(surface, std::move(aboutToShow)));
      };
    }
    return made;
  }
  std::unique_ptr<Renderer> makeCpuRenderer() override {
    makeTarget_ = WaylandShmRenderer::makeTarget;
    return std::make_unique<WaylandShmRenderer>(*wayland_);
  }
  std::unique_ptr<WindowServer> makeWindowServer(VideoOutput& output, RunLoop& loop) override {
    return std::make_unique<WaylandWindowServer>(*wayland_, output, makeTarget_, loop);
  }
  // Wayland has no trays of that kind.
  EmbeddingTray embeddingTray() override { return {}; }
  // A screen that is off shows no frame; the window server notices that.
  std::vector<StandstillReason> standstillReasons() override { return {}; }
  Disposable watchWindows(WindowExtent extent, RunLoop& /*loop*/, StandstillReason::Handler handler) override {
    return watchToplevels(*wayland_, extent, std::move(handler));
  }

 private:
  std::unique_ptr<WaylandConnection> wayland_;
  /// Of the renderer that was made last.
  MakeWaylandTarget makeTarget_;
};

}  // namespace

Result<std::unique_ptr<Desktop>> openWaylandDesktop() {
  return WaylandConnection::open().map(
      [](auto wayland) -> std::unique_ptr<Desktop> { return std::make_unique<WaylandDesktop>(std::move(wayland)); });
}

}  // namespace quilex
