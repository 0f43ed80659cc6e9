#include "linux/desktop/x11/X11Connection.h"

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <utility>

// After all headers that its macros would break.
#include <X11/Xlib-xcb.h>

namespace quilex {

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
  opened->atoms_ = X11Atoms(opened->connection_);
  opened->findRegions();
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

// The extension must be asked for its version before it is used.
void X11Connection::findRegions() {
  if (xcb_get_extension_data(connection_, &xcb_xfixes_id)->present != 0) {
    const XcbPointer<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(connection_, xcb_xfixes_query_version(connection_, 2, 0), nullptr));
    hasRegions_ = version && version->major_version >= 2;
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

bool X11Connection::hasWindowManager() const {
  const xcb_atom_t check = atom(Atom::netSupportingWmCheck);
  const auto claimed = property(root(), check, XCB_ATOM_WINDOW);
  return !claimed.empty() && property(claimed.front(), check, XCB_ATOM_WINDOW) == claimed;
}

bool X11Connection::supports(Atom hint) const {
  const auto supported = property(root(), atom(Atom::netSupported), XCB_ATOM_ATOM);
  return std::ranges::count(supported, atom(hint)) > 0;
}

Disposable X11Connection::observeEvents(std::function<void(const xcb_generic_event_t&)> handler) {
  return observers_.add(std::move(handler));
}

}  // namespace quilex
