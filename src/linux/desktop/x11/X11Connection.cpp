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
    "_NET_CURRENT_DESKTOP",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_SYSTEM_TRAY_S0",
    "_NET_WM_DESKTOP",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_BELOW",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "UTF8_STRING",
};

constexpr std::uint32_t kMostItems = 1024;

}  // namespace

std::unique_ptr<X11Connection> X11Connection::open() {
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    return nullptr;
  }
  std::unique_ptr<X11Connection> opened(new X11Connection(display, XDefaultScreen(display)));
  if (!opened->findVisual()) {
    return nullptr;
  }
  opened->internAtoms();
  opened->selectRootEvents();
  return opened;
}

X11Connection::X11Connection(XlibDisplay* display, int screenNumber)
    : xlibDisplay(display), connection(XGetXCBConnection(display)) {
  XSetEventQueueOwner(display, XCBOwnsEventQueue);
  // Xlib would end the process at the first error, such as a window that is gone when a driver draws into it.
  XSetErrorHandler([](XlibDisplay*, XErrorEvent*) { return 0; });
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (int skipped = 0; skipped < screenNumber; ++skipped) {
    xcb_screen_next(&screens);
  }
  defaultScreen = screens.data;
}

X11Connection::~X11Connection() = default;

void X11Connection::DisplayCloser::operator()(XlibDisplay* display) const {
  XCloseDisplay(display);
}

bool X11Connection::findVisual() {
  for (auto depth = xcb_screen_allowed_depths_iterator(defaultScreen); depth.rem > 0; xcb_depth_next(&depth)) {
    if (depth.data->depth != 24) {
      continue;
    }
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
      if (visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.data->red_mask == 0xFF0000 &&
          visual.data->blue_mask == 0xFF) {
        // The root's own visual spares colour map changes; else any will do.
        if (trueColor == 0 || visual.data->visual_id == defaultScreen->root_visual) {
          trueColor = visual.data->visual_id;
        }
      }
    }
  }
  if (trueColor == 0) {
    return false;
  }
  map = defaultScreen->default_colormap;
  if (trueColor != defaultScreen->root_visual) {
    map = xcb_generate_id(connection);
    xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, map, root(), trueColor);
  }
  return true;
}

void X11Connection::internAtoms() {
  std::array<xcb_intern_atom_cookie_t, kAtomNames.size()> cookies;
  for (std::size_t index = 0; index < kAtomNames.size(); ++index) {
    const char* name = kAtomNames[index];
    cookies[index] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  }
  for (std::size_t index = 0; index < kAtomNames.size(); ++index) {
    const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookies[index], nullptr));
    atoms[index] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }
}

// The server keeps one selection for each client and window, so no observer can make one of its own.
void X11Connection::selectRootEvents() {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection, root(), XCB_CW_EVENT_MASK, &events);
}

void X11Connection::start(std::function<void()> lost) {
  serverLost = std::move(lost);
  notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection), QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] { drainEvents(); });
  // A reply that was waited for may have brought events with it, and requests wait to be sent.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, notifier.get(),
                   [this] {
                     drainEvents();
                     xcb_flush(connection);
                   });
}

void X11Connection::drainEvents() {
  while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
    observers.notifyEach([&](const auto& handler) { handler(*event); });
  }
  if (xcb_connection_has_error(connection) != 0 && serverLost) {
    notifier->setEnabled(false);
    std::exchange(serverLost, nullptr)();
  }
}

std::vector<std::uint32_t> X11Connection::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) const {
  const auto cookie = xcb_get_property(connection, 0, window, name, type, 0, kMostItems);
  const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
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
  return observers.add(std::move(handler));
}

}  // namespace quilex
