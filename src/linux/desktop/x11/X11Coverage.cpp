#include "linux/desktop/x11/X11Coverage.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace quilex {

namespace {

// Changes come in bursts.
constexpr std::chrono::milliseconds kSettling{100};
constexpr std::uint32_t kFullyOpaque = 0xFFFFFFFF;
constexpr std::uint32_t kMostStates = 64;

bool contains(const Rect& outer, const Rect& inner) {
  return outer.x <= inner.x && outer.y <= inner.y && outer.x + outer.width >= inner.x + inner.width &&
         outer.y + outer.height >= inner.y + inner.height;
}

}  // namespace

X11Coverage::X11Coverage(X11Connection& x11, RunLoop& loop, std::function<void()> changed)
    : x11_(x11),
      runLoop_(loop),
      changed_(std::move(changed)),
      events_(x11.observeEvents([this](const auto& event) { handle(event); })) {
  readSoon();
}

bool X11Coverage::covers(const Rect& place) const {
  return std::ranges::any_of(seen_.hidden, [&](const Rect& each) { return contains(each, place); });
}

bool X11Coverage::has(WindowExtent extent) const {
  return seen_.isAnyFullScreen || (extent == WindowExtent::maximized && seen_.isAnyMaximized);
}

void X11Coverage::handle(const xcb_generic_event_t& event) {
  switch (eventType(event)) {
    case XCB_PROPERTY_NOTIFY:
      if (concerns(reinterpret_cast<const xcb_property_notify_event_t&>(event))) {
        readSoon();
      }
      break;
    case XCB_CONFIGURE_NOTIFY:
      if (large_.contains(reinterpret_cast<const xcb_configure_notify_event_t&>(event).window)) {
        readSoon();
      }
      break;
    case XCB_MAP_NOTIFY:
      if (large_.contains(reinterpret_cast<const xcb_map_notify_event_t&>(event).window)) {
        readSoon();
      }
      break;
    case XCB_UNMAP_NOTIFY:
      if (large_.contains(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window)) {
        readSoon();
      }
      break;
    default:
      break;
  }
}

bool X11Coverage::concerns(const xcb_property_notify_event_t& change) const {
  const auto is = [&](Atom name) { return change.atom == x11_.atom(name); };
  if (change.window == x11_.root()) {
    return is(Atom::netClientListStacking) || is(Atom::netCurrentDesktop) || is(Atom::netSupportingWmCheck);
  }
  if (is(Atom::netWmState)) {
    return followed_.contains(change.window);
  }
  return large_.contains(change.window) &&
         (is(Atom::netWmDesktop) || is(Atom::netWmOpaqueRegion) || is(Atom::netWmWindowOpacity));
}

void X11Coverage::readSoon() {
  if (!reading_) {
    reading_ = runLoop_.after(kSettling, [this] { read(); });
  }
}

void X11Coverage::read() {
  reading_.reset();
  const auto clients = x11_.hasWindowManager()
                           ? x11_.property(x11_.root(), x11_.atom(Atom::netClientListStacking), XCB_ATOM_WINDOW)
                           : std::vector<xcb_window_t>();
  follow(clients);
  const auto large = largeAmong(clients);
  large_.clear();
  Seen seen;
  for (const auto& [window, extent] : large) {
    large_.insert(window);
    if (!isSeen(window)) {
      continue;
    }
    seen.isAnyMaximized = seen.isAnyMaximized || extent == WindowExtent::maximized;
    if (extent == WindowExtent::fullScreen) {
      seen.isAnyFullScreen = true;
      const auto part = opaquePart(window);
      if (part) {
        seen.hidden.push_back(*part);
      }
    }
  }
  if (std::exchange(seen_, seen) != seen) {
    changed_();
  }
}

// The server keeps one event mask for each client and window, so that of the agent's own windows must stay.
void X11Coverage::follow(const std::vector<xcb_window_t>& clients) {
  const xcb_setup_t* const setup = xcb_get_setup(x11_.xcb());
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  std::set<xcb_window_t> now;
  for (const xcb_window_t window : clients) {
    if ((window & ~setup->resource_id_mask) == setup->resource_id_base) {
      continue;
    }
    now.insert(window);
    if (!followed_.contains(window)) {
      xcb_change_window_attributes(x11_.xcb(), window, XCB_CW_EVENT_MASK, &events);
    }
  }
  followed_ = std::move(now);
}

// Asks for all states at once.
std::vector<X11Coverage::Large> X11Coverage::largeAmong(const std::vector<xcb_window_t>& clients) const {
  xcb_connection_t* const xcb = x11_.xcb();
  std::vector<xcb_get_property_cookie_t> cookies;
  cookies.reserve(clients.size());
  for (const xcb_window_t window : clients) {
    cookies.push_back(xcb_get_property(xcb, 0, window, x11_.atom(Atom::netWmState), XCB_ATOM_ATOM, 0, kMostStates));
  }
  std::vector<Large> found;
  for (std::size_t index = 0; index < clients.size(); ++index) {
    const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookies[index], nullptr));
    if (!reply || reply->format != 32) {
      continue;
    }
    const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    if (const auto extent = extentOf({first, first + reply->value_len})) {
      found.push_back({clients[index], *extent});
    }
  }
  return found;
}

std::optional<WindowExtent> X11Coverage::extentOf(const std::vector<xcb_atom_t>& states) const {
  const auto has = [&](Atom name) { return std::ranges::count(states, x11_.atom(name)) > 0; };
  if (has(Atom::netWmStateHidden)) {
    return std::nullopt;
  }
  if (has(Atom::netWmStateFullscreen)) {
    return WindowExtent::fullScreen;
  }
  const bool isMaximized = has(Atom::netWmStateMaximizedHorizontally) && has(Atom::netWmStateMaximizedVertically);
  return isMaximized ? std::optional(WindowExtent::maximized) : std::nullopt;
}

// Window managers unmap what is on another workspace, but not all of them, nor at the moment at which they say so.
bool X11Coverage::isSeen(xcb_window_t window) const {
  const auto active = x11_.property(x11_.root(), x11_.atom(Atom::netCurrentDesktop), XCB_ATOM_CARDINAL);
  const auto own = x11_.property(window, x11_.atom(Atom::netWmDesktop), XCB_ATOM_CARDINAL);
  if (!active.empty() && !own.empty()) {
    return own.front() == kAllDesktops || own.front() == active.front();
  }
  const XcbPointer<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(x11_.xcb(), xcb_get_window_attributes(x11_.xcb(), window), nullptr));
  return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

// The part of the root window behind which nothing is seen: of a window with transparency, what its program says is
// opaque. Extended Window Manager Hints 1.5.
std::optional<Rect> X11Coverage::opaquePart(xcb_window_t window) const {
  xcb_connection_t* const xcb = x11_.xcb();
  const auto geometryCookie = xcb_get_geometry(xcb, window);
  const auto placeCookie = xcb_translate_coordinates(xcb, window, x11_.root(), 0, 0);
  const XcbPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(xcb, geometryCookie, nullptr));
  const XcbPointer<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(xcb, placeCookie, nullptr));
  const auto opacity = x11_.property(window, x11_.atom(Atom::netWmWindowOpacity), XCB_ATOM_CARDINAL);
  if (!geometry || !place || (!opacity.empty() && opacity.front() != kFullyOpaque)) {
    return std::nullopt;
  }
  const Rect all{double(place->dst_x), double(place->dst_y), double(geometry->width), double(geometry->height)};
  if (geometry->depth != kDepthWithAlpha) {
    return all;
  }
  const auto region = x11_.property(window, x11_.atom(Atom::netWmOpaqueRegion), XCB_ATOM_CARDINAL);
  if (region.size() < 4) {
    return std::nullopt;
  }
  // A full-screen window that is opaque says so in one rectangle.
  return Rect{all.x + region[0], all.y + region[1], double(region[2]), double(region[3])};
}

Disposable watchX11Windows(X11Connection& x11, WindowExtent extent, RunLoop& loop, StandstillReason::Handler handler) {
  struct Watch {
    Watch(X11Connection& connection, WindowExtent wanted, RunLoop& runLoop, StandstillReason::Handler notify)
        : extent(wanted), handler(std::move(notify)), windows(connection, runLoop, [this] { update(); }) {}
    void update() {
      const bool now = windows.has(extent);
      if (std::exchange(isAny, now) != now) {
        // The handler may release the token and with it this object.
        const auto running = handler;
        running(now);
      }
    }
    WindowExtent extent;
    StandstillReason::Handler handler;
    bool isAny = false;
    X11Coverage windows;
  };
  auto watch = std::make_shared<Watch>(x11, extent, loop, std::move(handler));
  return Disposable([watch = std::move(watch)]() mutable { watch.reset(); });
}

}  // namespace quilex
