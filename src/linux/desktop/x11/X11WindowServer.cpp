#include "linux/desktop/x11/X11WindowServer.h"

#include <xcb/randr.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quilex {

namespace {

constexpr std::chrono::milliseconds kNextTurn{0};
// The server and the window manager have answered a request of the agent's own by then.
constexpr std::chrono::milliseconds kOwnOrdering{500};

}  // namespace

X11WindowServer::X11WindowServer(X11Connection& x11, VideoOutput& videoOutput, Renderer& pictureRenderer, RunLoop& loop)
    : connection(x11),
      output(videoOutput),
      renderer(pictureRenderer),
      runLoop(loop),
      monitors(x11),
      windows(loop, [this] { ordered(); }),
      events(x11.observeEvents([this](const auto& event) { handle(event); })) {
  if (monitors.firstEvent()) {
    xcb_randr_select_input(
        x11.xcb(), x11.root(),
        XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  }
}

X11WindowServer::~X11WindowServer() = default;

std::vector<Screen> X11WindowServer::screens() const {
  std::vector<Screen> found;
  for (const X11Monitors::Monitor& monitor : monitors.list()) {
    found.push_back({monitor.name, monitor.frame});
  }
  return found;
}

std::unique_ptr<WallpaperWindow> X11WindowServer::makeWallpaperWindow(const Screen& screen) {
  return windows.lend([&](const X11DesktopWindow& window) { return window.frame() == screen.frame; },
                      [&] { return std::make_unique<X11DesktopWindow>(connection, output, renderer, screen.frame); });
}

void X11WindowServer::ordered() {
  ownOrdering = runLoop.after(kOwnOrdering, [this] {
    ownOrdering.reset();
    covered = isCovered();
  });
}

bool X11WindowServer::isCovered() const {
  bool anyMapped = false;
  for (const X11DesktopWindow* window : windows.all()) {
    anyMapped = anyMapped || window->isMapped();
    if (window->isMapped() && !window->isObscured()) {
      return false;
    }
  }
  return anyMapped;
}

void X11WindowServer::checkOcclusion() {
  occlusionCheck.reset();
  if (ownOrdering || covered == isCovered()) {
    return;
  }
  covered = !covered;
  occlusionObservers.notify();
}

void X11WindowServer::handle(const xcb_generic_event_t& event) {
  const std::uint8_t type = eventType(event);
  const auto randr = monitors.firstEvent();
  const bool isRandr = randr && (type == *randr + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == *randr + XCB_RANDR_NOTIFY);
  const bool isRootResize = type == XCB_CONFIGURE_NOTIFY &&
                            reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == connection.root();
  if ((isRandr || isRootResize) && !screensChanged) {
    screensChanged = runLoop.after(kNextTurn, [this] {
      screensChanged.reset();
      screenObservers.notify();
    });
  }
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.window == connection.root()) {
      rootPropertyChanged(change.atom);
    }
  }
  for (X11DesktopWindow* window : windows.all()) {
    window->handle(event);
  }
  if (type == XCB_VISIBILITY_NOTIFY && !occlusionCheck) {
    // The windows are told one after another.
    occlusionCheck = runLoop.after(kNextTurn, [this] { checkOcclusion(); });
  }
}

void X11WindowServer::rootPropertyChanged(xcb_atom_t name) {
  if (name == connection.atom(Atom::netCurrentDesktop)) {
    spaceObservers.notify();
  } else if (name == connection.atom(Atom::netSupportingWmCheck)) {
    for (X11DesktopWindow* window : windows.all()) {
      window->reassert();
    }
  }
}

Disposable X11WindowServer::observeScreens(std::function<void()> handler) {
  return screenObservers.add(std::move(handler));
}

Disposable X11WindowServer::observeOcclusion(std::function<void()> handler) {
  return occlusionObservers.add(std::move(handler));
}

Disposable X11WindowServer::observeActiveSpace(std::function<void()> handler) {
  return spaceObservers.add(std::move(handler));
}

}  // namespace quilex
