#include "linux/desktop/x11/X11DesktopWindow.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace quilex {

namespace {

constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;
constexpr std::string_view kTitle = "QuilexHelper";
constexpr std::string_view kClass{"quilexhelper\0QuilexHelper\0", 26};
// A window manager that keeps moving the window is left its way after so many attempts.
constexpr int kMostCorrections = 8;

int pixels(double length) {
  return static_cast<int>(std::lround(length));
}

}  // namespace

X11DesktopWindow::X11DesktopWindow(X11Connection& x11, VideoOutput& videoOutput, Renderer& pictureRenderer,
                                   const Rect& frame)
    : connection(x11), output(videoOutput), renderer(pictureRenderer), place(frame) {
  create();
  describe();
}

X11DesktopWindow::~X11DesktopWindow() {
  surface.reset();
  renderer.forget(window);
  xcb_destroy_window(connection.xcb(), window);
}

void X11DesktopWindow::create() {
  window = xcb_generate_id(connection.xcb());
  // No background: between mapping and the first frame the server leaves what was on the screen.
  const std::array<std::uint32_t, 4> values{XCB_BACK_PIXMAP_NONE, 0,
                                            XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_VISIBILITY_CHANGE |
                                                XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_BUTTON_PRESS |
                                                XCB_EVENT_MASK_BUTTON_RELEASE,
                                            connection.colormap()};
  xcb_create_window(connection.xcb(), X11Connection::kDepth, window, connection.root(),
                    static_cast<std::int16_t>(pixels(place.x)), static_cast<std::int16_t>(pixels(place.y)),
                    static_cast<std::uint16_t>(pixels(place.width)), static_cast<std::uint16_t>(pixels(place.height)),
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, connection.visual(),
                    XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values.data());
}

template <typename Item, std::size_t count>
void X11DesktopWindow::setProperty(Atom name, xcb_atom_t type, const std::array<Item, count>& items) {
  static_assert(sizeof(Item) == 4);
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, connection.atom(name), type, 32, count,
                      items.data());
}

// Extended Window Manager Hints 1.5 and ICCCM 2.0.
void X11DesktopWindow::describe() {
  const auto atom = [&](Atom name) { return connection.atom(name); };
  setProperty(Atom::netWmWindowType, XCB_ATOM_ATOM, std::array{atom(Atom::netWmWindowTypeDesktop)});
  setProperty(Atom::netWmState, XCB_ATOM_ATOM,
              std::array{atom(Atom::netWmStateSticky), atom(Atom::netWmStateBelow), atom(Atom::netWmStateSkipTaskbar),
                         atom(Atom::netWmStateSkipPager)});
  setProperty(Atom::netWmDesktop, XCB_ATOM_CARDINAL, std::array{kAllDesktops});
  setProperty(Atom::netWmPid, XCB_ATOM_CARDINAL, std::array{static_cast<std::uint32_t>(getpid())});
  // Flags: only the decorations field counts; decorations: none.
  setProperty(Atom::motifWmHints, atom(Atom::motifWmHints), std::array<std::uint32_t, 5>{2, 0, 0, 0, 0});

  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, atom(Atom::netWmName), atom(Atom::utf8String), 8,
                      kTitle.size(), kTitle.data());
  xcb_icccm_set_wm_name(connection.xcb(), window, XCB_ATOM_STRING, 8, kTitle.size(), kTitle.data());
  xcb_icccm_set_wm_class(connection.xcb(), window, kClass.size(), kClass.data());

  xcb_icccm_wm_hints_t hints = {};
  xcb_icccm_wm_hints_set_input(&hints, 0);
  xcb_icccm_set_wm_hints(connection.xcb(), window, &hints);

  xcb_size_hints_t size = {};
  const int width = pixels(place.width);
  const int height = pixels(place.height);
  xcb_icccm_size_hints_set_position(&size, 1, pixels(place.x), pixels(place.y));
  xcb_icccm_size_hints_set_size(&size, 1, width, height);
  xcb_icccm_size_hints_set_min_size(&size, width, height);
  xcb_icccm_size_hints_set_max_size(&size, width, height);
  xcb_icccm_size_hints_set_win_gravity(&size, XCB_GRAVITY_STATIC);
  xcb_icccm_set_wm_normal_hints(connection.xcb(), window, &size);
}

void X11DesktopWindow::setContent(std::unique_ptr<VideoView> newView, std::function<void()> newClick) {
  view = std::move(newView);
  click = std::move(newClick);
  const Rect& frame = view->frame;
  const PixelSize whole{pixels(frame.width), pixels(frame.height)};
  const int left = std::clamp(pixels(-frame.x), 0, whole.width);
  const int top = std::clamp(pixels(-frame.y), 0, whole.height);
  const PixelRect part{left, top, std::min(pixels(place.width), whole.width - left),
                       std::min(pixels(place.height), whole.height - top)};
  surface.reset();
  surface.emplace(output, window, whole, part, [this] {
    if (wanted && !mapped) {
      show();
    }
  });
  if (mapped) {
    surface->setVisible(!obscured);
    surface->repaint();
  }
}

void X11DesktopWindow::order(WindowOrder where) {
  wanted = true;
  wantedOrder = where;
  corrections = 0;
  misplaced = true;
}

void X11DesktopWindow::settle() {
  if (wanted && mapped && misplaced) {
    restack();
  } else if (wanted && !mapped && surface && surface->isReady()) {
    show();
  } else if (!wanted && mapped) {
    mapped = false;
    if (surface) {
      surface->setVisible(false);
    }
    // Withdrawn, as ICCCM 4.1.4 asks: a window manager is told even if it has not seen the window mapped yet.
    xcb_unmap_window(connection.xcb(), window);
    xcb_unmap_notify_event_t withdrawn = {};
    withdrawn.response_type = XCB_UNMAP_NOTIFY;
    withdrawn.event = connection.root();
    withdrawn.window = window;
    xcb_send_event(connection.xcb(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&withdrawn));
  }
}

void X11DesktopWindow::show() {
  mapped = true;
  if (!connection.hasWindowManager()) {
    // Without anyone to place it, it would come up above everything.
    restackUnmanaged();
  }
  // A window manager removes its hints from a withdrawn window.
  describe();
  xcb_map_window(connection.xcb(), window);
  restack();
}

void X11DesktopWindow::reassert() {
  if (mapped) {
    corrections = 0;
    restack();
  }
}

void X11DesktopWindow::restack() {
  misplaced = false;
  if (!connection.hasWindowManager()) {
    restackUnmanaged();
    return;
  }
  // The window manager keeps desktop windows below all others and orders them among themselves.
  const std::uint32_t mode = wantedOrder == WindowOrder::back ? XCB_STACK_MODE_BELOW : XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection.xcb(), window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

// To the bottom; or right above the topmost desktop window that is not of this agent.
void X11DesktopWindow::restackUnmanaged() {
  xcb_window_t sibling = 0;
  if (wantedOrder == WindowOrder::front) {
    const XcbPointer<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection.xcb(), xcb_query_tree(connection.xcb(), connection.root()), nullptr));
    if (tree) {
      const auto* children = xcb_query_tree_children(tree.get());
      const auto own = std::uint32_t(getpid());
      for (int index = xcb_query_tree_children_length(tree.get()) - 1; index >= 0 && sibling == 0; --index) {
        const xcb_window_t child = children[index];
        const auto types = connection.property(child, connection.atom(Atom::netWmWindowType), XCB_ATOM_ATOM);
        const auto owner = connection.property(child, connection.atom(Atom::netWmPid), XCB_ATOM_CARDINAL);
        if (std::count(types.begin(), types.end(), connection.atom(Atom::netWmWindowTypeDesktop)) > 0 &&
            (owner.empty() || owner.front() != own)) {
          sibling = child;
        }
      }
    }
  }
  if (sibling != 0) {
    const std::array<std::uint32_t, 2> values{sibling, XCB_STACK_MODE_ABOVE};
    xcb_configure_window(connection.xcb(), window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                         values.data());
  } else {
    const std::uint32_t mode = XCB_STACK_MODE_BELOW;
    xcb_configure_window(connection.xcb(), window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
  }
}

void X11DesktopWindow::handle(const xcb_generic_event_t& event) {
  switch (eventType(event)) {
    case XCB_EXPOSE: {
      const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
      if (expose.window == window && expose.count == 0 && mapped && surface) {
        obscured = false;
        surface->setVisible(true);
        surface->repaint();
        view->drawRect({0, 0, place.width, place.height});
      }
      break;
    }
    case XCB_VISIBILITY_NOTIFY: {
      const auto& visibility = reinterpret_cast<const xcb_visibility_notify_event_t&>(event);
      if (visibility.window == window && mapped && surface) {
        obscured = visibility.state == XCB_VISIBILITY_FULLY_OBSCURED;
        surface->setVisible(!obscured);
      }
      break;
    }
    case XCB_CONFIGURE_NOTIFY:
      keepPlace(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
      break;
    case XCB_BUTTON_PRESS:
      press(reinterpret_cast<const xcb_button_press_event_t&>(event));
      break;
    case XCB_BUTTON_RELEASE: {
      const auto& release = reinterpret_cast<const xcb_button_release_event_t&>(event);
      if (release.event == window && release.detail == XCB_BUTTON_INDEX_1 && std::exchange(pressed, false) && click) {
        click();
      }
      break;
    }
    default:
      break;
  }
}

// Only a synthetic event tells the place on the root: a real one is relative to the window manager's frame.
void X11DesktopWindow::keepPlace(const xcb_configure_notify_event_t& event) {
  if (event.window != window || corrections >= kMostCorrections) {
    return;
  }
  const bool sameSize = event.width == pixels(place.width) && event.height == pixels(place.height);
  const bool fromManager = wasSentByClient(reinterpret_cast<const xcb_generic_event_t&>(event));
  const bool samePlace = !fromManager || (event.x == pixels(place.x) && event.y == pixels(place.y));
  if (sameSize && samePlace) {
    return;
  }
  ++corrections;
  const std::array<std::int32_t, 4> values{pixels(place.x), pixels(place.y), pixels(place.width), pixels(place.height)};
  xcb_configure_window(connection.xcb(), window,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
}

// The view has a press of the primary button first; then the root window, where a window manager waits for clicks on
// the desktop. The pointer is let go before, so that a menu can grab it.
void X11DesktopWindow::press(const xcb_button_press_event_t& event) {
  if (event.event != window || wasSentByClient(reinterpret_cast<const xcb_generic_event_t&>(event))) {
    return;
  }
  pressed = event.detail == XCB_BUTTON_INDEX_1;
  if (pressed && view) {
    view->mouseDown();
  }
  xcb_ungrab_pointer(connection.xcb(), event.time);
  xcb_button_press_event_t forwarded = event;
  forwarded.event = connection.root();
  forwarded.child = XCB_NONE;
  forwarded.event_x = event.root_x;
  forwarded.event_y = event.root_y;
  xcb_send_event(connection.xcb(), 0, connection.root(), XCB_EVENT_MASK_BUTTON_PRESS,
                 reinterpret_cast<const char*>(&forwarded));
}

}  // namespace quilex
