#include "linux/desktop/wayland/WaylandWindowServer.h"

#include <algorithm>
#include <utility>

namespace quilex {

namespace {

// More than a busy compositor takes.
constexpr std::chrono::milliseconds kPatience{2000};
constexpr std::chrono::milliseconds kNextTurn{0};

}  // namespace

WaylandWindowServer::WaylandWindowServer(WaylandConnection& theConnection, WaylandTargets& targets, VideoOutput& output,
                                         Renderer& renderer, RunLoop& loop)
    : connection(theConnection),
      services{theConnection,
               targets,
               output,
               renderer,
               loop,
               [this] { lookSoon(kPatience); },
               [this] {
                 if (covered) {
                   look.reset();
                   lookSoon(kNextTurn);
                 }
               }},
      windows(loop,
              [this] {
                const auto isShown = [](const WaylandDesktopWindow* window) { return window->isShown(); };
                covered = covered && std::ranges::any_of(windows.all(), isShown);
              }),
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
    screensChanged = services.runLoop.after(kNextTurn, [this] {
      screensChanged.reset();
      screenObservers.notify();
    });
  }
}

void WaylandWindowServer::lookSoon(std::chrono::milliseconds delay) {
  if (!look) {
    look = services.runLoop.after(delay, [this] { checkOcclusion(); });
  }
}

void WaylandWindowServer::checkOcclusion() {
  look.reset();
  bool anyShown = false;
  bool anySeen = false;
  bool anyWaits = false;
  for (WaylandDesktopWindow* window : windows.all()) {
    if (window->isShown()) {
      anyShown = true;
      anySeen = !window->isLeftWaiting() || anySeen;
      anyWaits = window->waits() || anyWaits;
    }
  }
  if (!anyShown) {
    return;
  }
  if (std::exchange(covered, !anySeen) == anySeen) {
    occlusionObservers.notify();
  }
  if (!covered && anyWaits) {
    lookSoon(kPatience);
  }
}

Disposable WaylandWindowServer::observeOcclusion(std::function<void()> handler) {
  return occlusionObservers.add(std::move(handler));
}

Disposable WaylandWindowServer::observeScreens(std::function<void()> handler) {
  return screenObservers.add(std::move(handler));
}

}  // namespace quilex
