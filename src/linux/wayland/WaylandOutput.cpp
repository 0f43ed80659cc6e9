#include "linux/wayland/WaylandOutput.h"

#include <utility>

namespace quilex {

namespace {

WaylandOutput& self(void* data) {
  return *static_cast<WaylandOutput*>(data);
}

}  // namespace

const wl_output_listener WaylandOutput::outputListener = {
    .geometry =
        [](void* data, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t, std::int32_t,
           const char*, const char*, std::int32_t transform) {
          Description& pending = self(data).pending;
          pending.x = x;
          pending.y = y;
          pending.transform = transform;
        },
    .mode =
        [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height, std::int32_t) {
          if ((flags & WL_OUTPUT_MODE_CURRENT) != 0) {
            self(data).pending.mode = {width, height};
          }
        },
    .done =
        [](void* data, wl_output*) {
          WaylandOutput& output = self(data);
          output.current = output.pending;
          output.known = true;
          output.described();
        },
    .scale = [](void* data, wl_output*, std::int32_t factor) { self(data).pending.scale = factor; },
    .name = [](void* data, wl_output*, const char* name) { self(data).pending.name = name; },
    .description = [](void*, wl_output*, const char*) {},
};

const zxdg_output_v1_listener WaylandOutput::placeListener = {
    .logical_position =
        [](void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
          self(data).pending.logical.x = x;
          self(data).pending.logical.y = y;
        },
    .logical_size =
        [](void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
          self(data).pending.logical.width = width;
          self(data).pending.logical.height = height;
        },
    // Since version 3 the output's own event says it.
    .done = [](void*, zxdg_output_v1*) {},
    .name = [](void* data, zxdg_output_v1*, const char* name) { self(data).pending.name = name; },
    .description = [](void*, zxdg_output_v1*, const char*) {},
};

WaylandOutput::WaylandOutput(std::uint32_t globalName, wl_output* bound, std::function<void()> changed)
    : id(globalName), output(bound), described(std::move(changed)) {
  wl_output_add_listener(bound, &outputListener, this);
}

void WaylandOutput::locate(zxdg_output_manager_v1* manager) {
  if (manager != nullptr && !place) {
    place.reset(zxdg_output_manager_v1_get_xdg_output(manager, object()));
    zxdg_output_v1_add_listener(place.get(), &placeListener, this);
  }
}

PixelSize WaylandOutput::upright() const {
  const bool turned = (current.transform & 1) != 0;  // by 90 or 270 degrees, mirrored or not
  return turned ? PixelSize{current.mode.height, current.mode.width} : current.mode;
}

Rect WaylandOutput::frame() const {
  const PixelRect& logical = current.logical;
  if (logical.width > 0) {
    return {double(logical.x), double(logical.y), double(logical.width), double(logical.height)};
  }
  const PixelSize size = upright();
  return {double(current.x), double(current.y), double(size.width) / current.scale,
          double(size.height) / current.scale};
}

}  // namespace quilex
