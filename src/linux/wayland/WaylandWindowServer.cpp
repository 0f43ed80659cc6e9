#include "linux/wayland/WaylandWindowServer.h"

#include <algorithm>
#include <utility>

#include "app/FatalError.h"

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
  const auto& all = connection.outputs();
  const auto output =
      std::ranges::find_if(all, [&](const auto& each) { return each->isKnown() && each->frame() == screen.frame; });
  if (output == all.end()) {
    fatalError("a window was asked for on a screen that is not there");
  }
  return windows.lend([&](const WaylandDesktopWindow& window) { return window.suits(**output); },
                      [&] { return std::make_unique<WaylandDesktopWindow>(services, **output); });
}

void WaylandWindowServer::screensChangedSoon() {
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
