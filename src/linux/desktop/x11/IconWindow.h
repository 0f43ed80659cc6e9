#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <optional>
#include <vector>

#include "linux/desktop/x11/IconLayer.h"
#include "linux/desktop/x11/IconMask.h"
#include "linux/desktop/x11/XcbHandles.h"

namespace quilex {

using XcbDamage = XcbObject<xcb_damage_destroy>;

/// A window in which another program shows icons on the desktop. The server keeps all of its picture, also where the
/// wallpaper lies over it (Composite extension 0.4), and reports what changes in it (Damage extension 1.1). Everything
/// here may block until the server has answered.
class IconWindow {
 public:
  /// The connection must outlive the object.
  IconWindow(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window);
  ~IconWindow();
  IconWindow(const IconWindow&) = delete;
  IconWindow& operator=(const IconWindow&) = delete;

  xcb_window_t id() const { return window_; }
  IconLayer::Kind kind() const { return kind_; }
  /// Whether it can be seen, if nothing covers it.
  bool isViewable() const { return isViewable_; }
  /// The pixels of its icons, on the root window. All of it where icons and background cannot be told apart.
  std::vector<PixelRect> icons() const;

  /// Part of the window was drawn again.
  void damaged(const xcb_damage_notify_event_t& event);
  /// The window or the background must be looked at as a whole.
  void invalidate() { isKnown_ = false; }
  bool isStale() const { return !isKnown_ || stale_; }
  /// Looks at what is stale. `background` is the pixmap that is shown on the root window, or none.
  void look(xcb_pixmap_t background);

 private:
  /// Where the pixels are that icons differ from.
  struct Background {
    xcb_pixmap_t pixmap = XCB_NONE;
    std::uint32_t colour = 0;
  };

  bool locate();
  void classify(xcb_pixmap_t background);
  /// Marks the pixels of that part of the window; false if they could not be read.
  bool mark(const PixelRect& part);
  std::optional<std::uint32_t> majority() const;
  PixelRect whole() const { return {0, 0, place_.width, place_.height}; }

  xcb_connection_t* const connection_;
  const xcb_window_t root_;
  const xcb_window_t window_;
  XcbDamage damage_;
  PixelRect place_;
  std::uint8_t depth_ = 0;
  bool isViewable_ = false;
  bool isKnown_ = false;
  /// In the window, what was drawn since the last look.
  std::optional<PixelRect> stale_;
  /// Since when looks have found what could not be right.
  std::optional<std::chrono::steady_clock::time_point> doubtfulSince_;
  IconLayer::Kind kind_ = IconLayer::Kind::opaque;
  Background background_;
  IconMask mask_;
};

}  // namespace quilex
