#include "linux/desktop/wayland/WaylandWindowServer.h"

#include <algorithm>
#include <utility>

namespace quilex {

namespace {

// Longer than a busy compositor takes to send a frame callback.
constexpr std::chrono::milliseconds kPatience{2000};
constexpr std::chrono::milliseconds kNextTurn{0};

}  // namespace

WaylandWindowServer::WaylandWindowServer(WaylandConnection& connection, const LayerChoice& choice, VideoOutput& output,
                                         MakeWaylandTarget makeTarget, RunLoop& loop,
                                         std::function<void(WindowOrder)> ordered)
    : connection_(connection),
      choice_(choice),
      services_{connection,
                output,
                std::move(makeTarget),
                loop,
                [this] { checkOcclusionIn(kPatience); },
                [this] {
                  if (covered_) {
                    occlusionCheck_.reset();
                    checkOcclusionIn(kNextTurn);
                  }
                }},
      ordered_(std::move(ordered)),
      windows_(loop, [this] { settled(); }),
      pointer_(connection,
               [this](const wl_surface* surface, std::uint32_t button, bool down) {
                 for (WaylandDesktopWindow* window : windows_.all()) {
                   if (window->is(surface)) {
                     window->button(button, down);
                     return;
                   }
                 }
               }),
      outputs_(connection.observeOutputs([this] { screensChangedSoon(); })) {}

std::vector<Screen> WaylandWindowServer::screens() const {
  std::vector<Screen> found;
  for (const auto& output : connection_.outputs()) {
    if (output->isKnown()) {
      found.push_back({output->name(), output->place()});
    }
  }
  return found;
}

std::unique_ptr<WallpaperWindow> WaylandWindowServer::makeWallpaperWindow(const Screen& screen) {
  // With another scale or mode, a window keeps its output and so its surface, whose place among those of other programs
  // depends on its age.
  const auto suits = [&](WaylandDesktopWindow& window) {
    const Screen& known = window.screen();
    const bool isSame = known.name == screen.name && (known.frame == screen.frame || !screen.name.empty());
    if (isSame) {
      window.moveTo(screen);
    }
    return isSame;
  };
  return windows_.lend(suits, [&] { return std::make_unique<WaylandDesktopWindow>(services_, choice_, screen); });
}

void WaylandWindowServer::screensChangedSoon() {
  windows_.settleSoon();
  if (!screensChanged_) {
    screensChanged_ = services_.runLoop.after(kNextTurn, [this] {
      screensChanged_.reset();
      screenObservers_.notify();
    });
  }
}

void WaylandWindowServer::settled() {
  const auto isShown = [](const WaylandDesktopWindow* window) { return window->isShown(); };
  covered_ = covered_ && std::ranges::any_of(windows_.all(), isShown);
  updateUnseen();
  if (!windows_.all().empty()) {
    ordered_(windows_.all().front()->ordered());
  }
}

// The core makes no window while there is no output.
void WaylandWindowServer::updateUnseen() {
  const bool unseen = covered_ || windows_.all().empty();
  if (std::exchange(unseen_, unseen) != unseen) {
    unseenObservers_.notify(unseen);
  }
}

void WaylandWindowServer::checkOcclusionIn(std::chrono::milliseconds delay) {
  if (!occlusionCheck_) {
    occlusionCheck_ = services_.runLoop.after(delay, [this] { checkOcclusion(); });
  }
}

void WaylandWindowServer::checkOcclusion() {
  occlusionCheck_.reset();
  bool anyShown = false;
  bool anySeen = false;
  bool anyWaits = false;
  for (WaylandDesktopWindow* window : windows_.all()) {
    if (window->isShown()) {
      anyShown = true;
      anySeen = anySeen || !window->isLeftWaiting();
      anyWaits = anyWaits || window->waitsForCallback();
      window->noteWait();
    }
  }
  if (!anyShown) {
    return;
  }
  if (std::exchange(covered_, !anySeen) == anySeen) {
    updateUnseen();
    occlusionObservers_.notify();
  }
  if (!covered_ && anyWaits) {
    checkOcclusionIn(kPatience);
  }
}

Disposable WaylandWindowServer::observeOcclusion(std::function<void()> handler) {
  return occlusionObservers_.add(std::move(handler));
}

Disposable WaylandWindowServer::observeUnseen(std::function<void(bool)> handler) {
  return unseenObservers_.add(std::move(handler));
}

Disposable WaylandWindowServer::observeScreens(std::function<void()> handler) {
  return screenObservers_.add(std::move(handler));
}

}  // namespace quilex
