#include "linux/desktop/x11/X11Connection.h"

#include <QAbstractEventDispatcher>
#include <cstring>
#include <utility>

// After all headers that its macros would break.
#include <X11/Xlib-xcb.h>

namespace quilex {

namespace {

constexpr std::array<const char*, static_cast<std::size_t>(Atom::count)> kAtomNames{
    "MANAGER",
    "_MOTIF_WM_HINTS",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_CURRENT_DESKTOP",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_SYSTEM_TRAY_S0",
    "_NET_WM_DESKTOP",
    "_NET_WM_NAME",
    "_NET_WM_OPAQUE_REGION",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_BELOW",
    "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_MAXIMIZED_HORZ",
    "_NET_WM_STATE_MAXIMIZED_VERT",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_WINDOW_OPACITY",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "UTF8_STRING",
};

constexpr std::uint32_t kMostItems = 1024;

}  // namespace

void XlibCloser::operator()(Display* display) const {
  XCloseDisplay(display);
}

Result<std::unique_ptr<X11Connection>> X11Connection::open() {
  XlibDisplay display(XOpenDisplay(nullptr));
  if (!display) {
    return failed("there is no X server at DISPLAY");
  }
  std::unique_ptr<X11Connection> opened(new X11Connection(std::move(display)));
  if (!opened->findVisual()) {
    return failed("the X server has no 24-bit colour");
  }
  opened->internAtoms();
  opened->selectRootEvents();
  return opened;
}

X11Connection::X11Connection(XlibDisplay display)
    : display_(std::move(display)), connection_(XGetXCBConnection(xlib())) {
  XSetEventQueueOwner(xlib(), XCBOwnsEventQueue);
  // Xlib would end the process at the first error, such as a window that is gone when a driver draws into it.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
  for (int skipped = 0; skipped < XDefaultScreen(xlib()); ++skipped) {
    xcb_screen_next(&screens);
  }
  screen_ = screens.data;
}

X11Connection::~X11Connection() = default;

bool X11Connection::findVisual() {
  for (auto depth = xcb_screen_allowed_depths_iterator(screen_); depth.rem > 0; xcb_depth_next(&depth)) {
    if (depth.data->depth != 24) {
      continue;
    }
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
      if (visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.data->red_mask == 0xFF0000 &&
          visual.data->blue_mask == 0xFF) {
        // With the root's own visual the colour map need not change; else any will do.
        if (visual_ == 0 || visual.data->visual_id == screen_->root_visual) {
          visual_ = visual.data->visual_id;
        }
      }
    }
  }
  if (visual_ == 0) {
    return false;
  }
  if (visual_ != screen_->root_visual) {
    ownColormap_ = XcbColormap(connection_);
    xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, ownColormap_.id(), root(), visual_);
  }
  return true;
}

void X11Connection::internAtoms() {
  std::array<xcb_intern_atom_cookie_t, kAtomNames.size()> cookies;
  for (std::size_t index = 0; index < kAtomNames.size(); ++index) {
    const char* name = kAtomNames[index];
    cookies[index] = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  }
  for (std::size_t index = 0; index < kAtomNames.size(); ++index) {
    const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookies[index], nullptr));
    atoms_[index] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }
}

// The server keeps one event mask for each client and window, so observers cannot have one each.
void X11Connection::selectRootEvents() {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, root(), XCB_CW_EVENT_MASK, &events);
}

void X11Connection::start(std::function<void()> lost) {
  serverLost_ = std::move(lost);
  notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { drainEvents(); });
  // Waiting for a reply may have read events too, and requests may not have been sent yet.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, notifier_.get(),
                   [this] {
                     drainEvents();
                     xcb_flush(connection_);
                   });
}

void X11Connection::drainEvents() {
  while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
    observers_.notifyEach([&](const auto& handler) { handler(*event); });
  }
  if (xcb_connection_has_error(connection_) != 0 && serverLost_) {
    notifier_->setEnabled(false);
    std::exchange(serverLost_, nullptr)();
  }
}

std::vector<std::uint32_t> X11Connection::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) const {
  const auto cookie = xcb_get_property(connection_, 0, window, name, type, 0, kMostItems);
  const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 32) {
    return {};
  }
  const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {items, items + reply->value_len};
}

bool X11Connection::hasWindowManager() const {
  const xcb_atom_t check = atom(Atom::netSupportingWmCheck);
  const auto claimed = property(root(), check, XCB_ATOM_WINDOW);
  return !claimed.empty() && property(claimed.front(), check, XCB_ATOM_WINDOW) == claimed;
}

Disposable X11Connection::observeEvents(std::function<void(const xcb_generic_event_t&)> handler) {
  return observers_.add(std::move(handler));
}

}  // namespace quilex
