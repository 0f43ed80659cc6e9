#pragma once

#include <functional>

#include "linux/desktop/wayland/WaylandConnection.h"

namespace quilex {

/// The pointer over the agent's surfaces, with the desktop's usual cursor. Main thread.
class WaylandPointer {
 public:
  /// Called for each press and release of a button: the surface, the button's code (linux/input-event-codes.h) and
  /// whether it went down.
  using Handler = std::function<void(wl_surface* surface, std::uint32_t button, bool down)>;
  /// The connection must outlive the pointer.
  WaylandPointer(WaylandConnection& connection, Handler handler);
  WaylandPointer(const WaylandPointer&) = delete;
  WaylandPointer& operator=(const WaylandPointer&) = delete;

 private:
  static const wl_seat_listener seatListener;
  static const wl_pointer_listener pointerListener;

  void capabilities(std::uint32_t mask);
  void enter(std::uint32_t serial, wl_surface* surface);

  WaylandConnection& connection_;
  Handler handler_;
  WaylandObject<wl_seat> seat_;
  WaylandObject<wl_pointer> pointer_;
  WaylandObject<wl_cursor_theme> theme_;
  WaylandObject<wl_surface> cursorSurface_;
  wl_surface* over_ = nullptr;
};

}  // namespace quilex
