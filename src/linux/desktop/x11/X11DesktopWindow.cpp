#include "linux/desktop/x11/X11DesktopWindow.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace quilex {

namespace {

constexpr std::string_view kTitle = "QuilexHelper";
constexpr std::string_view kClass{"quilexhelper\0QuilexHelper\0", 26};
// After so many attempts a window manager that keeps moving the window has its way.
constexpr int kMostCorrections = 8;

}  // namespace

X11DesktopWindow::X11DesktopWindow(X11Connection& x11, VideoOutput& output, const MakeX11Target& makeTarget,
                                   const Rect& place)
    : x11_(x11), output_(output), screen_(place), place_(pixels(place)), window_(x11.xcb()) {
  create();
  shape();
  describe();
  target_ = makeTarget(window_.id());
}

void X11DesktopWindow::create() {
  // No background: between mapping and the first frame the server leaves what was on the screen.
  const std::array<std::uint32_t, 4> values{
      XCB_BACK_PIXMAP_NONE, 0,
      XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_VISIBILITY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY, x11_.colormap()};
  xcb_create_window(x11_.xcb(), X11Connection::kDepth, window_.id(), x11_.root(), static_cast<std::int16_t>(place_.x),
                    static_cast<std::int16_t>(place_.y), static_cast<std::uint16_t>(place_.width),
                    static_cast<std::uint16_t>(place_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, x11_.visual(),
                    XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values.data());
}

template <typename Item, std::size_t count>
void X11DesktopWindow::setProperty(Atom name, xcb_atom_t type, const std::array<Item, count>& items) {
  static_assert(sizeof(Item) == 4);
  xcb_change_property(x11_.xcb(), XCB_PROP_MODE_REPLACE, window_.id(), x11_.atom(name), type, 32, count, items.data());
}

template <std::size_t count>
void X11DesktopWindow::configure(std::uint16_t fields, const std::array<std::uint32_t, count>& values) {
  xcb_configure_window(x11_.xcb(), window_.id(), fields, values.data());
}

// Extended Window Manager Hints 1.5 and ICCCM 2.0.
void X11DesktopWindow::describe() {
  const auto atom = [&](Atom name) { return x11_.atom(name); };
  setProperty(Atom::netWmWindowType, XCB_ATOM_ATOM, std::array{atom(Atom::netWmWindowTypeDesktop)});
  setProperty(Atom::netWmState, XCB_ATOM_ATOM,
              std::array{atom(Atom::netWmStateSticky), atom(Atom::netWmStateBelow), atom(Atom::netWmStateSkipTaskbar),
                         atom(Atom::netWmStateSkipPager)});
  setProperty(Atom::netWmDesktop, XCB_ATOM_CARDINAL, std::array{kAllDesktops});
  setProperty(Atom::netWmPid, XCB_ATOM_CARDINAL, std::array{static_cast<std::uint32_t>(getpid())});
  // Flags: only the decorations field counts; decorations: none.
  setProperty(Atom::motifWmHints, atom(Atom::motifWmHints), std::array<std::uint32_t, 5>{2, 0, 0, 0, 0});
  // Margins for a shadow of the window's own: none. Otherwise some compositors draw one, which is seen on the next
  // monitor.
  setProperty(Atom::gtkFrameExtents, XCB_ATOM_CARDINAL, std::array<std::uint32_t, 4>{});

  xcb_change_property(x11_.xcb(), XCB_PROP_MODE_REPLACE, window_.id(), atom(Atom::netWmName), atom(Atom::utf8String), 8,
                      kTitle.size(), kTitle.data());
  xcb_icccm_set_wm_name(x11_.xcb(), window_.id(), XCB_ATOM_STRING, 8, kTitle.size(), kTitle.data());
  xcb_icccm_set_wm_class(x11_.xcb(), window_.id(), kClass.size(), kClass.data());

  xcb_icccm_wm_hints_t hints = {};
  xcb_icccm_wm_hints_set_input(&hints, 0);
  xcb_icccm_set_wm_hints(x11_.xcb(), window_.id(), &hints);

  xcb_size_hints_t size = {};
  xcb_icccm_size_hints_set_position(&size, 1, place_.x, place_.y);
  xcb_icccm_size_hints_set_size(&size, 1, place_.width, place_.height);
  xcb_icccm_size_hints_set_min_size(&size, place_.width, place_.height);
  xcb_icccm_size_hints_set_max_size(&size, place_.width, place_.height);
  xcb_icccm_size_hints_set_win_gravity(&size, XCB_GRAVITY_STATIC);
  xcb_icccm_set_wm_normal_hints(x11_.xcb(), window_.id(), &size);
}

void X11DesktopWindow::setContent(std::unique_ptr<VideoView> view, std::function<void()> click) {
  view_ = std::move(view);
  click_ = std::move(click);
  content_.reset();
  content_.emplace(output_, shownPart(view_->frame, screen_), [this] {
    if (wanted_ && !mapped_) {
      show();
    }
  });
  updateTarget();
  content_->repaint();
}

void X11DesktopWindow::updateTarget() {
  content_->setTarget(mapped_ && !isObscured() ? target_.get() : nullptr);
}

void X11DesktopWindow::setCovered(bool isCovered) {
  if (std::exchange(covered_, isCovered) != isCovered && content_) {
    updateTarget();
    content_->catchUp();
  }
}

void X11DesktopWindow::order(WindowOrder where) {
  wanted_ = true;
  wantedOrder_ = where;
  corrections_ = 0;
  misplaced_ = true;
}

void X11DesktopWindow::settle() {
  if (wanted_ && mapped_ && misplaced_) {
    restack();
  } else if (wanted_ && !mapped_ && content_ && content_->isReady()) {
    show();
  } else if (!wanted_ && mapped_) {
    withdraw();
  }
}

void X11DesktopWindow::show() {
  mapped_ = true;
  if (!x11_.hasWindowManager()) {
    // Nobody else places the window, which would come up above all others.
    restackUnmanaged();
  }
  // A window manager removes its hints from a withdrawn window.
  describe();
  xcb_map_window(x11_.xcb(), window_.id());
  restack();
}

// As ICCCM 4.1.4 asks: the synthetic event notifies a window manager that has not seen the window mapped yet.
void X11DesktopWindow::withdraw() {
  mapped_ = false;
  if (content_) {
    updateTarget();
  }
  xcb_unmap_window(x11_.xcb(), window_.id());
  xcb_unmap_notify_event_t withdrawn = {};
  withdrawn.response_type = XCB_UNMAP_NOTIFY;
  withdrawn.event = x11_.root();
  withdrawn.window = window_.id();
  xcb_send_event(x11_.xcb(), 0, x11_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&withdrawn));
}

void X11DesktopWindow::reassert() {
  if (mapped_) {
    corrections_ = 0;
    restack();
  }
}

void X11DesktopWindow::remap() {
  if (mapped_) {
    withdraw();
    show();
  }
}

void X11DesktopWindow::setIcons(const IconLayer& icons) {
  const bool wasAbove = belongsAboveIcons();
  const bool isMoved = icons.icons != icons_.icons || icons.kind != icons_.kind;
  icons_ = icons;
  if (isMoved) {
    shape();
  }
  if (wasAbove != belongsAboveIcons()) {
    reassert();
  }
}

// Region and shape requests of XFixes 2.0.
void X11DesktopWindow::shape() {
  if (!x11_.hasRegions()) {
    return;
  }
  std::vector<xcb_rectangle_t> icons;
  for (const PixelRect& icon : icons_.icons) {
    const int left = std::max(icon.x, place_.x);
    const int top = std::max(icon.y, place_.y);
    const int right = std::min(icon.x + icon.width, place_.x + place_.width);
    const int bottom = std::min(icon.y + icon.height, place_.y + place_.height);
    if (left < right && top < bottom) {
      icons.push_back({static_cast<std::int16_t>(left - place_.x), static_cast<std::int16_t>(top - place_.y),
                       static_cast<std::uint16_t>(right - left), static_cast<std::uint16_t>(bottom - top)});
    }
  }
  xcb_connection_t* const xcb = x11_.xcb();
  const XcbRegion region(xcb);
  xcb_xfixes_create_region(xcb, region.id(), static_cast<std::uint32_t>(icons.size()), icons.data());
  const bool showsIcons = wantedOrder_ == WindowOrder::back;
  if (showsIcons && icons_.kind == IconLayer::Kind::separable) {
    const XcbRegion seen(xcb);
    xcb_xfixes_create_region(xcb, seen.id(), 0, nullptr);
    const xcb_rectangle_t whole{0, 0, static_cast<std::uint16_t>(place_.width),
                                static_cast<std::uint16_t>(place_.height)};
    xcb_xfixes_invert_region(xcb, region.id(), whole, seen.id());
    xcb_xfixes_set_window_shape_region(xcb, window_.id(), XCB_SHAPE_SK_BOUNDING, 0, 0, seen.id());
  } else {
    xcb_xfixes_set_window_shape_region(xcb, window_.id(), XCB_SHAPE_SK_BOUNDING, 0, 0, XCB_NONE);
  }
  // An icon that nobody sees must not be opened by a double click. Nothing else is kept from the desktop below.
  if (showsIcons) {
    xcb_xfixes_create_region(xcb, region.id(), 0, nullptr);
  }
  xcb_xfixes_set_window_shape_region(xcb, window_.id(), XCB_SHAPE_SK_INPUT, 0, 0, region.id());
  // Not all window managers let the frame take after the window in this.
  if (frame_ != XCB_NONE) {
    xcb_xfixes_set_window_shape_region(xcb, frame_, XCB_SHAPE_SK_INPUT, 0, 0, region.id());
  }
}

void X11DesktopWindow::reparented(const xcb_reparent_notify_event_t& event) {
  if (event.window == window_.id()) {
    frame_ = event.parent == x11_.root() ? xcb_window_t{XCB_NONE} : event.parent;
    shape();
  }
}

void X11DesktopWindow::restack() {
  misplaced_ = false;
  shape();
  if (!x11_.hasWindowManager()) {
    restackUnmanaged();
    return;
  }
  // The window manager keeps desktop windows below all others and orders them among themselves.
  const std::uint32_t mode = belongsAboveIcons() ? XCB_STACK_MODE_ABOVE : XCB_STACK_MODE_BELOW;
  if (!x11_.supports(Atom::netRestackWindow)) {
    configure(XCB_CONFIG_WINDOW_STACK_MODE, std::array{mode});
    return;
  }
  // As a pager asks, because some raise a window for a program only after a person's own action, and else mark it as
  // one that wants attention.
  constexpr std::uint32_t kFromPager = 2;
  xcb_client_message_event_t message = {};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window_.id();
  message.type = x11_.atom(Atom::netRestackWindow);
  std::ranges::copy(std::array<std::uint32_t, 3>{kFromPager, XCB_NONE, mode}, message.data.data32);
  xcb_send_event(x11_.xcb(), 0, x11_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
}

void X11DesktopWindow::restackUnmanaged() {
  const xcb_window_t below = belongsAboveIcons() ? topmostForeignDesktop() : xcb_window_t{XCB_NONE};
  if (below != XCB_NONE) {
    configure(XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
              std::array<std::uint32_t, 2>{below, XCB_STACK_MODE_ABOVE});
  } else {
    configure(XCB_CONFIG_WINDOW_STACK_MODE, std::array<std::uint32_t, 1>{XCB_STACK_MODE_BELOW});
  }
}

// The topmost desktop window that is not of this process.
xcb_window_t X11DesktopWindow::topmostForeignDesktop() const {
  const auto own = static_cast<std::uint32_t>(getpid());
  const auto stack = xcbChildren(x11_.xcb(), x11_.root());
  const auto found = std::find_if(stack.rbegin(), stack.rend(), [&](xcb_window_t child) {
    const auto types = x11_.property(child, x11_.atom(Atom::netWmWindowType), XCB_ATOM_ATOM);
    const auto owner = x11_.property(child, x11_.atom(Atom::netWmPid), XCB_ATOM_CARDINAL);
    return std::ranges::count(types, x11_.atom(Atom::netWmWindowTypeDesktop)) > 0 &&
           std::ranges::count(owner, own) == 0;
  });
  return found == stack.rend() ? xcb_window_t{XCB_NONE} : *found;
}

void X11DesktopWindow::handle(const xcb_generic_event_t& event) {
  switch (eventType(event)) {
    case XCB_EXPOSE:
      exposed(reinterpret_cast<const xcb_expose_event_t&>(event));
      break;
    case XCB_VISIBILITY_NOTIFY:
      visibilityChanged(reinterpret_cast<const xcb_visibility_notify_event_t&>(event));
      break;
    case XCB_CONFIGURE_NOTIFY:
      keepPlace(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
      break;
    case XCB_REPARENT_NOTIFY:
      reparented(reinterpret_cast<const xcb_reparent_notify_event_t&>(event));
      break;
    default:
      break;
  }
}

void X11DesktopWindow::exposed(const xcb_expose_event_t& event) {
  if (event.window == window_.id() && event.count == 0 && mapped_ && content_) {
    obscured_ = false;
    updateTarget();
    content_->repaint();
    view_->drawRect({0, 0, screen_.width, screen_.height});
  }
}

void X11DesktopWindow::visibilityChanged(const xcb_visibility_notify_event_t& event) {
  if (event.window == window_.id() && mapped_ && content_) {
    obscured_ = event.state == XCB_VISIBILITY_FULLY_OBSCURED;
    updateTarget();
  }
}

// Only a synthetic event has the place on the root window. In a real one it is relative to the parent, which may be the
// window manager's.
void X11DesktopWindow::keepPlace(const xcb_configure_notify_event_t& event) {
  if (event.window != window_.id() || corrections_ >= kMostCorrections) {
    return;
  }
  const bool sameSize = event.width == place_.width && event.height == place_.height;
  const bool fromManager = wasSentByClient(reinterpret_cast<const xcb_generic_event_t&>(event));
  const bool samePlace = !fromManager || (event.x == place_.x && event.y == place_.y);
  if (sameSize && samePlace) {
    return;
  }
  ++corrections_;
  const auto value = [](int number) { return static_cast<std::uint32_t>(number); };
  configure(XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
            std::array{value(place_.x), value(place_.y), value(place_.width), value(place_.height)});
}

bool X11DesktopWindow::contains(int x, int y) const {
  return x >= place_.x && x < place_.x + place_.width && y >= place_.y && y < place_.y + place_.height;
}

void X11DesktopWindow::press() {
  pressed_ = mapped_ && view_;
  if (pressed_) {
    view_->mouseDown();
  }
}

void X11DesktopWindow::release() {
  if (std::exchange(pressed_, false) && click_) {
    click_();
  }
}

}  // namespace quilex
