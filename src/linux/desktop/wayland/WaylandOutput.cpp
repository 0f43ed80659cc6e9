#include "linux/desktop/wayland/WaylandOutput.h"

#include <utility>

namespace quilex {

const wl_output_listener WaylandOutput::outputListener = {
    .geometry =
        [](void* data, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t, std::int32_t,
           const char*, const char*, std::int32_t transform) {
          Description& next = listener<WaylandOutput>(data).pending;
          next.x = x;
          next.y = y;
          next.transform = transform;
        },
    .mode =
        [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
           std::int32_t milliHertz) {
          if ((flags & WL_OUTPUT_MODE_CURRENT) != 0) {
            listener<WaylandOutput>(data).pending.mode = {width, height};
            listener<WaylandOutput>(data).pending.refreshRate = milliHertz / 1000.0;
          }
        },
    .done =
        [](void* data, wl_output*) {
          auto& described = listener<WaylandOutput>(data);
          described.current = described.pending;
          described.known = true;
          described.changed();
        },
    .scale = [](void* data, wl_output*, std::int32_t factor) { listener<WaylandOutput>(data).pending.scale = factor; },
    .name = [](void* data, wl_output*, const char* name) { listener<WaylandOutput>(data).pending.name = name; },
    .description = [](void*, wl_output*, const char*) {},
};

const zxdg_output_v1_listener WaylandOutput::placeListener = {
    .logical_position =
        [](void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
          listener<WaylandOutput>(data).pending.logical.x = x;
          listener<WaylandOutput>(data).pending.logical.y = y;
        },
    .logical_size =
        [](void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
          listener<WaylandOutput>(data).pending.logical.width = width;
          listener<WaylandOutput>(data).pending.logical.height = height;
        },
    // Since version 3 the output's own event says it.
    .done = [](void*, zxdg_output_v1*) {},
    .name = [](void* data, zxdg_output_v1*, const char* name) { listener<WaylandOutput>(data).pending.name = name; },
    .description = [](void*, zxdg_output_v1*, const char*) {},
};

WaylandOutput::WaylandOutput(std::uint32_t globalName, wl_output* bound, std::function<void()> theChanged)
    : id(globalName), output(bound), changed(std::move(theChanged)) {
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
