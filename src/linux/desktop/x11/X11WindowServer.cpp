#include "linux/desktop/x11/X11WindowServer.h"

#include <xcb/randr.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

constexpr std::chrono::milliseconds kNextTurn{0};
// By then the server and the window manager have carried out what the agent asked for.
constexpr std::chrono::milliseconds kOwnOrdering{500};
// After so many attempts a window manager that keeps another order has its way.
constexpr int kMostAttempts = 6;

}  // namespace

X11WindowServer::X11WindowServer(X11Connection& x11, VideoOutput& output, MakeX11Target makeTarget, RunLoop& loop,
                                 std::function<void(const Placement&)> placed)
    : x11_(x11),
      output_(output),
      makeTarget_(std::move(makeTarget)),
      runLoop_(loop),
      monitors_(x11),
      coverage_(x11, loop, [this] { coverageChanged(); }),
      windows_(loop, [this] { ordered(); }),
      placed_(std::move(placed)),
      events_(x11.observeEvents([this](const auto& event) { handle(event); })),
      watcher_([this] { iconsChanged(); }, [this](const DesktopPress& press) { pressed(press); }) {
  if (monitors_.firstEvent()) {
    xcb_randr_select_input(
        x11.xcb(), x11.root(),
        XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  }
}

X11WindowServer::~X11WindowServer() = default;

std::vector<Screen> X11WindowServer::screens() const {
  std::vector<Screen> found;
  for (const X11Monitors::Monitor& monitor : monitors_.list()) {
    found.push_back({monitor.name, monitor.place});
  }
  return found;
}

std::unique_ptr<WallpaperWindow> X11WindowServer::makeWallpaperWindow(const Screen& screen) {
  return windows_.lend([&](const X11DesktopWindow& window) { return window.covers(screen); },
                       [&] {
                         auto made = std::make_unique<X11DesktopWindow>(x11_, output_, makeTarget_, screen.frame);
                         made->setIcons(watcher_.icons());
                         made->setCovered(coverage_.covers(screen.frame));
                         return made;
                       });
}

void X11WindowServer::iconsChanged() {
  const IconLayer& icons = watcher_.icons();
  for (X11DesktopWindow* window : windows_.all()) {
    window->setIcons(icons);
  }
  reportPlacement();
  if (!arrangement_) {
    arrange();
  }
}

void X11WindowServer::reportPlacement() {
  const auto isInFront = [](const X11DesktopWindow* window) { return window->hidesIcons(); };
  const Placement now = placementFor(watcher_.icons().kind, std::ranges::any_of(windows_.all(), isInFront));
  if (placement_ != now) {
    placement_ = now;
    qCInfo(desktopLog, "the wallpaper lies %s", now.description.c_str());
    placed_(now);
  }
}

void X11WindowServer::pressed(const DesktopPress& press) {
  for (X11DesktopWindow* window : windows_.all()) {
    if (!press.isDown) {
      window->release();
    } else if (window->contains(press.x, press.y)) {
      window->press();
    }
  }
}

bool X11WindowServer::isMisordered() const {
  const IconLayer& icons = watcher_.icons();
  return std::ranges::any_of(windows_.all(), [&](const X11DesktopWindow* window) {
    return window->isMapped() && (window->belongsAboveIcons() ? icons.hasWindowAbove : icons.hasWindowBelow);
  });
}

void X11WindowServer::arrange() {
  arrangement_.reset();
  if (!isMisordered()) {
    attempts_ = 0;
    return;
  }
  if (attempts_ == kMostAttempts) {
    return;
  }
  // Some window managers keep the order in which windows were mapped. Others would remove the state of the window after
  // it is set again.
  const bool remaps = attempts_ % 2 == 1 && !x11_.supports(Atom::netRestackWindow);
  ++attempts_;
  for (X11DesktopWindow* window : windows_.all()) {
    remaps ? window->remap() : window->reassert();
  }
  windows_.settleSoon();
  arrangement_ = runLoop_.after(kOwnOrdering, [this] { arrange(); });
}

void X11WindowServer::ordered() {
  reportPlacement();
  ownOrdering_ = runLoop_.after(kOwnOrdering, [this] {
    ownOrdering_.reset();
    covered_ = isCovered();
  });
  updateUnseen();
}

bool X11WindowServer::isCovered() const {
  bool anyMapped = false;
  for (const X11DesktopWindow* window : windows_.all()) {
    anyMapped = anyMapped || window->isMapped();
    if (window->isMapped() && !window->isObscured()) {
      return false;
    }
  }
  return anyMapped;
}

void X11WindowServer::coverageChanged() {
  for (X11DesktopWindow* window : windows_.all()) {
    window->setCovered(coverage_.covers(window->place()));
  }
  coverMayHaveChanged();
}

// Each window has an event of its own.
void X11WindowServer::coverMayHaveChanged() {
  if (!occlusionCheck_) {
    occlusionCheck_ = runLoop_.after(kNextTurn, [this] { checkOcclusion(); });
  }
}

// The core makes no window while there is no monitor.
void X11WindowServer::updateUnseen() {
  const bool unseen = windows_.all().empty() || isCovered();
  if (std::exchange(unseen_, unseen) != unseen) {
    unseenObservers_.notify(unseen);
  }
}

void X11WindowServer::checkOcclusion() {
  occlusionCheck_.reset();
  updateUnseen();
  if (ownOrdering_ || covered_ == isCovered()) {
    return;
  }
  covered_ = !covered_;
  occlusionObservers_.notify();
}

void X11WindowServer::handle(const xcb_generic_event_t& event) {
  const std::uint8_t type = eventType(event);
  const auto randr = monitors_.firstEvent();
  const bool isRandr = randr && (type == *randr + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == *randr + XCB_RANDR_NOTIFY);
  const bool isRootResize = type == XCB_CONFIGURE_NOTIFY &&
                            reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == x11_.root();
  if ((isRandr || isRootResize) && !screensChanged_) {
    screensChanged_ = runLoop_.after(kNextTurn, [this] {
      screensChanged_.reset();
      screenObservers_.notify();
    });
  }
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.window == x11_.root()) {
      rootPropertyChanged(change.atom);
    }
  }
  for (X11DesktopWindow* window : windows_.all()) {
    window->handle(event);
  }
  if (type == XCB_VISIBILITY_NOTIFY) {
    coverMayHaveChanged();
  }
}

void X11WindowServer::rootPropertyChanged(xcb_atom_t name) {
  if (name == x11_.atom(Atom::netCurrentDesktop)) {
    spaceObservers_.notify();
  } else if (name == x11_.atom(Atom::netSupportingWmCheck)) {
    for (X11DesktopWindow* window : windows_.all()) {
      window->reassert();
    }
  }
}

Disposable X11WindowServer::observeScreens(std::function<void()> handler) {
  return screenObservers_.add(std::move(handler));
}

Disposable X11WindowServer::observeOcclusion(std::function<void()> handler) {
  return occlusionObservers_.add(std::move(handler));
}

Disposable X11WindowServer::observeUnseen(std::function<void(bool)> handler) {
  return unseenObservers_.add(std::move(handler));
}

Disposable X11WindowServer::observeActiveSpace(std::function<void()> handler) {
  return spaceObservers_.add(std::move(handler));
}

}  // namespace quilex
