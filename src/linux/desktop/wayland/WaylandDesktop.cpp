#include "linux/desktop/wayland/WaylandDesktop.h"

#include <EGL/eglext.h>

#include <QStringList>
#include <optional>
#include <utility>

#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/desktop/wayland/WaylandEglWindow.h"
#include "linux/desktop/wayland/WaylandShmRenderer.h"
#include "linux/desktop/wayland/WaylandToplevels.h"
#include "linux/desktop/wayland/WaylandWindowServer.h"

namespace quilex {

namespace {

DesktopIcons iconsOf(const WaylandConnection& wayland) {
  // Their programs (pcmanfm-qt, xfdesktop) draw icons in the background layer of any compositor.
  const QStringList session = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
  for (const auto* name : {"LXQt", "XFCE"}) {
    if (session.contains(QLatin1String(name), Qt::CaseInsensitive)) {
      return DesktopIcons::inBackground;
    }
  }
  return wayland.isPlasma() ? DesktopIcons::opaque : DesktopIcons::none;
}

class WaylandDesktop : public Desktop {
 public:
  explicit WaylandDesktop(std::unique_ptr<WaylandConnection> wayland)
      : wayland_(std::move(wayland)), choice_(iconsOf(*wayland_)) {}

  const char* kind() const override { return "wayland"; }
  const char* toolkitPlugin() const override { return "wayland"; }
  const char* serverName() const override { return "the Wayland compositor"; }
  int connection() const override { return wl_display_get_fd(wayland_->display()); }
  std::string placement() const override { return choice_.describe(order_); }
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
    return std::make_unique<WaylandWindowServer>(*wayland_, choice_, output, makeTarget_, loop,
                                                 [this](WindowOrder now) {
                                                   if (std::exchange(order_, now) != now) {
                                                     placementChanged();
                                                   }
                                                 });
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
  LayerChoice choice_;
  /// As the windows were ordered last.
  WindowOrder order_ = WindowOrder::back;
  /// Of the renderer that was made last.
  MakeWaylandTarget makeTarget_;
};

}  // namespace

Result<std::unique_ptr<Desktop>> openWaylandDesktop() {
  return WaylandConnection::open().map(
      [](auto wayland) -> std::unique_ptr<Desktop> { return std::make_unique<WaylandDesktop>(std::move(wayland)); });
}

}  // namespace quilex
