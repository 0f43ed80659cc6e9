#include "linux/desktop/x11/IconReader.h"

#include <unistd.h>
#include <xcb/composite.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <utility>

namespace quilex {

namespace {

// A program draws in many steps, and its icons may be seen a moment late. Both hold for every later look too.
constexpr std::chrono::milliseconds kDrawing{50};
// A background is announced, drawn and shown in windows at different times, and only the first is reported. So all is
// looked at again some times.
constexpr std::array kSetting{std::chrono::milliseconds(250), std::chrono::milliseconds(1000),
                              std::chrono::milliseconds(3000)};
// Looking at all of a large window takes some milliseconds, and it may be one that draws all the time.
constexpr std::chrono::milliseconds kOpaque{2000};

}  // namespace

IconReader::IconReader(std::function<void(const IconLayer&)> seen, std::function<void(const DesktopPress&)> pressed)
    : seen_(std::move(seen)), pressed_(std::move(pressed)), connection_(xcb_connect(nullptr, nullptr)) {
  xcb_connection_t* const xcb = connection_.get();
  if (xcb_connection_has_error(xcb) != 0 || !hasExtensions()) {
    return;
  }
  atoms_ = X11Atoms(xcb);
  root_ = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
  // Raw events come for each press, whichever window gets it (X Input Extension 2.2).
  struct {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
  } presses;
  xcb_input_xi_select_events(xcb, root_, 1, &presses.head);
  lookIn(std::chrono::milliseconds(0));
}

// The windows need the connection.
IconReader::~IconReader() {
  windows_.clear();
  xcb_flush(connection_.get());
}

// Each extension must be asked for its version before it is used.
bool IconReader::hasExtensions() {
  xcb_connection_t* const xcb = connection_.get();
  const auto* damage = xcb_get_extension_data(xcb, &xcb_damage_id);
  const auto* composite = xcb_get_extension_data(xcb, &xcb_composite_id);
  const auto* input = xcb_get_extension_data(xcb, &xcb_input_id);
  if (damage->present == 0 || composite->present == 0 || input->present == 0) {
    return false;
  }
  firstDamageEvent_ = damage->first_event;
  inputOpcode_ = input->major_opcode;
  const auto damageCookie = xcb_damage_query_version(xcb, 1, 1);
  const auto compositeCookie = xcb_composite_query_version(xcb, 0, 4);
  const auto inputCookie = xcb_input_xi_query_version(xcb, 2, 2);
  const XcbPointer<xcb_damage_query_version_reply_t> damageVersion(
      xcb_damage_query_version_reply(xcb, damageCookie, nullptr));
  const XcbPointer<xcb_composite_query_version_reply_t> compositeVersion(
      xcb_composite_query_version_reply(xcb, compositeCookie, nullptr));
  const XcbPointer<xcb_input_xi_query_version_reply_t> inputVersion(
      xcb_input_xi_query_version_reply(xcb, inputCookie, nullptr));
  return damageVersion && compositeVersion && inputVersion;
}

bool IconReader::advance() {
  xcb_connection_t* const xcb = connection_.get();
  bool isDone = false;
  while (!isDone) {
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
      handle(*event);
    }
    // Waiting for answers reads events too, which nothing else would announce.
    isDone = !nextLook_ || *nextLook_ > Clock::now();
    if (!isDone) {
      look();
    }
  }
  xcb_flush(xcb);
  return xcb_connection_has_error(xcb) == 0;
}

int IconReader::patience() const {
  if (!nextLook_) {
    return -1;
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*nextLook_ - Clock::now());
  return static_cast<int>(std::max<std::int64_t>(0, left.count()));
}

void IconReader::lookIn(std::chrono::milliseconds delay) {
  const Clock::time_point when = Clock::now() + delay;
  nextLook_ = nextLook_ ? std::min(*nextLook_, when) : when;
}

void IconReader::handle(const xcb_generic_event_t& event) {
  const std::uint8_t type = eventType(event);
  if (type == firstDamageEvent_ + XCB_DAMAGE_NOTIFY) {
    const auto& damage = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
    for (const auto& window : windows_) {
      if (window->id() == damage.drawable) {
        window->damaged(damage);
        lookIn(window->kind() == IconLayer::Kind::opaque ? kOpaque : kDrawing);
      }
    }
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const xcb_atom_t name = reinterpret_cast<const xcb_property_notify_event_t&>(event).atom;
    if (name == atoms_[Atom::xRootPixmap]) {
      lookAtAllAgain();
    } else if (name == atoms_[Atom::netClientList] || name == atoms_[Atom::netSupportingWmCheck]) {
      isListStale_ = true;
      lookIn(kDrawing);
    }
  } else if (type == XCB_GE_GENERIC) {
    buttonEvent(reinterpret_cast<const xcb_ge_generic_event_t&>(event));
  } else if (type == XCB_CONFIGURE_NOTIFY || type == XCB_MAP_NOTIFY || type == XCB_UNMAP_NOTIFY ||
             type == XCB_REPARENT_NOTIFY || type == XCB_DESTROY_NOTIFY) {
    isListStale_ = true;
    lookAtAllAgain();
    lookIn(kDrawing);
  }
}

void IconReader::lookAtAllAgain() {
  wholeLooks_ = 0;
  lookIn(kSetting.front());
}

void IconReader::look() {
  nextLook_.reset();
  if (wholeLooks_ < kSetting.size()) {
    std::ranges::for_each(windows_, [](const auto& window) { window->invalidate(); });
    if (++wholeLooks_ < kSetting.size()) {
      lookIn(kSetting[wholeLooks_]);
    }
  }
  if (std::exchange(isListStale_, false)) {
    findWindows();
  }
  if (wallpapers_.empty() && layer_.kind != IconLayer::Kind::none) {
    // All is looked at when the wallpaper is shown again.
    return;
  }
  const auto pixmap = xcbProperty(connection_.get(), root_, atoms_[Atom::xRootPixmap], XCB_ATOM_PIXMAP);
  IconLayer layer;
  for (const auto& window : windows_) {
    if (window->isStale()) {
      window->look(pixmap.empty() ? xcb_pixmap_t{XCB_NONE} : pixmap.front());
    }
    if (window->isStale()) {
      lookIn(kSetting.front());
    }
    if (!window->isViewable()) {
      continue;
    }
    const auto icons = window->icons();
    layer.icons.insert(layer.icons.end(), icons.begin(), icons.end());
    // If the wallpaper has to lie above one of them, the others are left out of it too, an opaque one as a whole.
    layer.kind = std::max(layer.kind, window->kind());
  }
  order(layer);
  if (layer != layer_) {
    layer_ = layer;
    seen_(layer_);
  }
}

// The window manager's list has all windows that it manages (Extended Window Manager Hints 1.5). Without one they are
// the root window's children, and the server itself reports them.
void IconReader::findWindows() {
  xcb_connection_t* const xcb = connection_.get();
  auto clients = xcbProperty(xcb, root_, atoms_[Atom::netClientList], XCB_ATOM_WINDOW);
  std::uint32_t rootEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;
  if (clients.empty()) {
    rootEvents |= XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    clients = xcbChildren(xcb, root_);
  }
  xcb_change_window_attributes(xcb, root_, XCB_CW_EVENT_MASK, &rootEvents);
  const auto desktops = [&](bool own) {
    std::vector<xcb_window_t> found;
    std::ranges::copy_if(clients, std::back_inserter(found), [&](xcb_window_t each) { return isDesktop(each, own); });
    return found;
  };
  wallpapers_ = desktops(true);
  const auto others = desktops(false);
  std::erase_if(windows_, [&](const auto& window) { return std::ranges::count(others, window->id()) == 0; });
  for (const xcb_window_t other : others) {
    if (std::ranges::none_of(windows_, [&](const auto& window) { return window->id() == other; })) {
      windows_.push_back(std::make_unique<IconWindow>(xcb, root_, other));
      lookAtAllAgain();
    }
  }
  // A frame that is restacked sends the event, not the window in it.
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  const auto follow = [&](xcb_window_t window) {
    xcb_change_window_attributes(xcb, toplevelOf(window), XCB_CW_EVENT_MASK, &events);
  };
  std::ranges::for_each(wallpapers_, follow);
  std::ranges::for_each(others, follow);
}

bool IconReader::isDesktop(xcb_window_t window, bool own) const {
  xcb_connection_t* const xcb = connection_.get();
  const auto types = xcbProperty(xcb, window, atoms_[Atom::netWmWindowType], XCB_ATOM_ATOM);
  const auto owner = xcbProperty(xcb, window, atoms_[Atom::netWmPid], XCB_ATOM_CARDINAL);
  return std::ranges::count(types, atoms_[Atom::netWmWindowTypeDesktop]) > 0 &&
         (std::ranges::count(owner, static_cast<std::uint32_t>(getpid())) > 0) == own;
}

xcb_window_t IconReader::toplevelOf(xcb_window_t window) const {
  xcb_connection_t* const xcb = connection_.get();
  for (;;) {
    const XcbPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, window), nullptr));
    if (!tree || tree->parent == root_ || tree->parent == XCB_NONE) {
      return window;
    }
    window = tree->parent;
  }
}

void IconReader::order(IconLayer& layer) const {
  const auto stack = xcbChildren(connection_.get(), root_);
  const auto height = [&](xcb_window_t window) { return std::ranges::find(stack, toplevelOf(window)); };
  for (const auto& window : windows_) {
    for (const xcb_window_t wallpaper : wallpapers_) {
      if (window->isViewable()) {
        const bool isAbove = height(window->id()) > height(wallpaper);
        (isAbove ? layer.hasWindowAbove : layer.hasWindowBelow) = true;
      }
    }
  }
}

// A raw event has the number of the device's button, to which the person's mapping has not been applied.
void IconReader::buttonEvent(const xcb_ge_generic_event_t& event) {
  const bool isDown = event.event_type == XCB_INPUT_RAW_BUTTON_PRESS;
  if (event.extension != inputOpcode_ || (!isDown && event.event_type != XCB_INPUT_RAW_BUTTON_RELEASE)) {
    return;
  }
  xcb_connection_t* const xcb = connection_.get();
  const std::uint32_t button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event).detail;
  const auto mappingCookie = xcb_get_pointer_mapping(xcb);
  const auto pointerCookie = xcb_query_pointer(xcb, root_);
  const XcbPointer<xcb_get_pointer_mapping_reply_t> mapping(xcb_get_pointer_mapping_reply(xcb, mappingCookie, nullptr));
  const XcbPointer<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(xcb, pointerCookie, nullptr));
  const bool isMapped = mapping && button >= 1 && button <= mapping->map_len;
  const std::uint32_t meaning = isMapped ? xcb_get_pointer_mapping_map(mapping.get())[button - 1] : button;
  if (!pointer || meaning != XCB_BUTTON_INDEX_1) {
    return;
  }
  const DesktopPress press{pointer->root_x, pointer->root_y, isDown};
  if (!isDown || isWallpaperAt(press.x, press.y)) {
    pressed_(press);
  }
}

// A window whose icons are left out counts as the wallpaper, since it is above it for a moment now and then.
bool IconReader::isWallpaperAt(int x, int y) const {
  std::vector<xcb_window_t> seen = wallpapers_;
  if (layer_.kind == IconLayer::Kind::separable) {
    std::ranges::transform(windows_, std::back_inserter(seen), [](const auto& window) { return window->id(); });
  }
  const xcb_window_t topmost = topmostAt(x, y);
  return !isIconAt(x, y) &&
         std::ranges::any_of(seen, [&](xcb_window_t window) { return toplevelOf(window) == topmost; });
}

bool IconReader::isIconAt(int x, int y) const {
  return layer_.kind == IconLayer::Kind::separable && std::ranges::any_of(layer_.icons, [&](const PixelRect& icon) {
           return x >= icon.x && x < icon.x + icon.width && y >= icon.y && y < icon.y + icon.height;
         });
}

// Windows that take input without showing anything do not count.
xcb_window_t IconReader::topmostAt(int x, int y) const {
  xcb_connection_t* const xcb = connection_.get();
  const auto stack = xcbChildren(xcb, root_);
  std::vector<std::pair<xcb_get_geometry_cookie_t, xcb_get_window_attributes_cookie_t>> cookies;
  cookies.reserve(stack.size());
  for (const xcb_window_t window : stack) {
    cookies.emplace_back(xcb_get_geometry(xcb, window), xcb_get_window_attributes(xcb, window));
  }
  xcb_window_t topmost = XCB_NONE;
  for (std::size_t index = 0; index < stack.size(); ++index) {
    const XcbPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(xcb, cookies[index].first, nullptr));
    const XcbPointer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb, cookies[index].second, nullptr));
    if (geometry && attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
        attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT && x >= geometry->x && y >= geometry->y &&
        x < geometry->x + geometry->width && y < geometry->y + geometry->height) {
      topmost = stack[index];
    }
  }
  return topmost;
}

}  // namespace quilex
