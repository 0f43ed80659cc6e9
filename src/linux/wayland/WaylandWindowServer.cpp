#include "linux/wayland/WaylandWindowServer.h"

#include <utility>

namespace quilex {

WaylandWindowServer::WaylandWindowServer(WaylandConnection& theConnection, WaylandTargets& targets, VideoOutput& output,
                                         Renderer& renderer, RunLoop& loop)
    : connection(theConnection),
      services{theConnection, targets, output, renderer, loop},
      windows(loop, [] {}),
      pointer(theConnection,
              [this](const wl_surface* surface, std::uint32_t button, bool down) {
                for (WaylandDesktopWindow* window : windows.all()) {
                  if (window->is(surface)) {
                    window->button(button, down);
                    return;
                  }
                }
              }),
      outputs(theConnection.observeOutputs([this] { screensChangedSoon(); })) {}

std::vector<Screen> WaylandWindowServer::screens() const {
  std::vector<Screen> found;
  for (const auto& output : connection.outputs()) {
    if (output->isKnown()) {
      found.push_back({output->name(), output->frame()});
    }
  }
  return found;
}

std::unique_ptr<WallpaperWindow> WaylandWindowServer::makeWallpaperWindow(const Screen& screen) {
  return windows.lend([&](const WaylandDesktopWindow& window) { return window.covers(screen); },
                      [&] { return std::make_unique<WaylandDesktopWindow>(services, screen); });
}

void WaylandWindowServer::screensChangedSoon() {
  windows.settleSoon();
  if (!screensChanged) {
    screensChanged = services.runLoop.after(std::chrono::milliseconds(0), [this] {
      screensChanged.reset();
      screenObservers.notify();
    });
  }
}

Disposable WaylandWindowServer::observeScreens(std::function<void()> handler) {
  return screenObservers.add(std::move(handler));
}

}  // namespace quilex
