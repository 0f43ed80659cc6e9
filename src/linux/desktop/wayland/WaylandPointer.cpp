#include "linux/desktop/wayland/WaylandPointer.h"

#include <cstdlib>
#include <utility>

namespace quilex {

namespace {

constexpr int kCursorSize = 24;

int cursorSize() {
  const char* const size = std::getenv("XCURSOR_SIZE");
  const int asked = size != nullptr ? std::atoi(size) : 0;  // NOLINT(cert-err34-c): anything else is no size
  return asked > 0 ? asked : kCursorSize;
}

}  // namespace

const wl_seat_listener WaylandPointer::seatListener = {
    .capabilities = [](void* data, wl_seat*, std::uint32_t mask) { listener<WaylandPointer>(data).capabilities(mask); },
    .name = [](void*, wl_seat*, const char*) {},
};

// The seat is bound at version 5. Later versions have more events, which are never sent; their members stay null.
const wl_pointer_listener WaylandPointer::pointerListener = [] {
  wl_pointer_listener events{};
  events.enter = [](void* data, wl_pointer*, std::uint32_t serial, wl_surface* surface, wl_fixed_t, wl_fixed_t) {
    listener<WaylandPointer>(data).enter(serial, surface);
  };
  events.leave = [](void* data, wl_pointer*, std::uint32_t, wl_surface*) {
    listener<WaylandPointer>(data).over_ = nullptr;
  };
  events.motion = [](void*, wl_pointer*, std::uint32_t, wl_fixed_t, wl_fixed_t) {};
  events.button = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t button, std::uint32_t state) {
    if (listener<WaylandPointer>(data).over_ != nullptr) {
      listener<WaylandPointer>(data).handler_(listener<WaylandPointer>(data).over_, button,
                                              state == WL_POINTER_BUTTON_STATE_PRESSED);
    }
  };
  events.axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {};
  events.frame = [](void*, wl_pointer*) {};
  events.axis_source = [](void*, wl_pointer*, std::uint32_t) {};
  events.axis_stop = [](void*, wl_pointer*, std::uint32_t, std::uint32_t) {};
  events.axis_discrete = [](void*, wl_pointer*, std::uint32_t, std::int32_t) {};
  return events;
}();

WaylandPointer::WaylandPointer(WaylandConnection& connection, Handler handler)
    : connection_(connection), handler_(std::move(handler)), seat_(connection.bindSeat()) {
  if (seat_) {
    wl_seat_add_listener(seat_.get(), &seatListener, this);
  }
}

void WaylandPointer::capabilities(std::uint32_t mask) {
  const bool has = (mask & WL_SEAT_CAPABILITY_POINTER) != 0;
  if (has && !pointer_) {
    pointer_.reset(wl_seat_get_pointer(seat_.get()));
    wl_pointer_add_listener(pointer_.get(), &pointerListener, this);
  } else if (!has) {
    pointer_.reset();
    over_ = nullptr;
  }
}

void WaylandPointer::enter(std::uint32_t serial, wl_surface* surface) {
  over_ = surface;
  if (!theme_) {
    theme_.reset(wl_cursor_theme_load(std::getenv("XCURSOR_THEME"), cursorSize(), connection_.sharedMemory()));
    cursorSurface_.reset(wl_compositor_create_surface(connection_.compositor()));
  }
  const wl_cursor* const cursor = theme_ ? wl_cursor_theme_get_cursor(theme_.get(), "left_ptr") : nullptr;
  if (cursor == nullptr) {
    return;
  }
  wl_cursor_image& image = *cursor->images[0];
  wl_pointer_set_cursor(pointer_.get(), serial, cursorSurface_.get(), static_cast<std::int32_t>(image.hotspot_x),
                        static_cast<std::int32_t>(image.hotspot_y));
  wl_surface_attach(cursorSurface_.get(), wl_cursor_image_get_buffer(&image), 0, 0);
  wl_surface_damage_buffer(cursorSurface_.get(), 0, 0, static_cast<std::int32_t>(image.width),
                           static_cast<std::int32_t>(image.height));
  wl_surface_commit(cursorSurface_.get());
  connection_.flush();
}

}  // namespace quilex
