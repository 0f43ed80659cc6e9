#include "linux/x11/X11WindowServer.h"

#include <xcb/randr.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace quilex {

namespace {

constexpr std::chrono::milliseconds kNextTurn{0};
// The server and the window manager have answered a request of the agent's own by then.
constexpr std::chrono::milliseconds kOwnOrdering{500};

std::string atomName(xcb_connection_t* connection, xcb_atom_t atom) {
  const XcbPointer<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
  return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                             static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
               : std::string();
}

}  // namespace

X11WindowServer::X11WindowServer(X11Connection& x11, VideoOutput& videoOutput, Renderer& pictureRenderer, RunLoop& loop)
    : connection(x11),
      output(videoOutput),
      renderer(pictureRenderer),
      runLoop(loop),
      windows(loop, [this] { ordered(); }),
      events(x11.observeEvents([this](const auto& event) { handle(event); })) {
  const auto* randr = xcb_get_extension_data(x11.xcb(), &xcb_randr_id);
  if (randr == nullptr || randr->present == 0) {
    return;
  }
  const XcbPointer<xcb_randr_query_version_reply_t> version(
      xcb_randr_query_version_reply(x11.xcb(), xcb_randr_query_version(x11.xcb(), 1, 5), nullptr));
  hasMonitors = version && (version->major_version > 1 || version->minor_version >= 5);
  firstRandrEvent = randr->first_event;
  xcb_randr_select_input(
      x11.xcb(), x11.root(),
      XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
}

X11WindowServer::~X11WindowServer() = default;

std::vector<Screen> X11WindowServer::screens() const {
  std::vector<Screen> found;
  if (hasMonitors) {
    const auto cookie = xcb_randr_get_monitors(connection.xcb(), connection.root(), 1);
    const XcbPointer<xcb_randr_get_monitors_reply_t> reply(
        xcb_randr_get_monitors_reply(connection.xcb(), cookie, nullptr));
    if (!reply) {
      return found;
    }
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get()); monitor.rem > 0;
         xcb_randr_monitor_info_next(&monitor)) {
      const auto& info = *monitor.data;
      if (info.width > 0 && info.height > 0) {
        found.push_back({atomName(connection.xcb(), info.name),
                         {double(info.x), double(info.y), double(info.width), double(info.height)}});
      }
    }
  } else {
    const XcbPointer<xcb_get_geometry_reply_t> root(
        xcb_get_geometry_reply(connection.xcb(), xcb_get_geometry(connection.xcb(), connection.root()), nullptr));
    if (root) {
      found.push_back({"root", {0, 0, double(root->width), double(root->height)}});
    }
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
  const bool isRandr = firstRandrEvent != 0 && (type == firstRandrEvent + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                                type == firstRandrEvent + XCB_RANDR_NOTIFY);
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
