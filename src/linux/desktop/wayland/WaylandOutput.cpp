#include "linux/desktop/wayland/WaylandOutput.h"

#include <utility>

namespace quilex {

const wl_output_listener WaylandOutput::outputListener = {
    .geometry =
        [](void* data, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t, std::int32_t,
           const char*, const char*, std::int32_t transform) {
          Description& next = listener<WaylandOutput>(data).pending_;
          next.x = x;
          next.y = y;
          next.transform = transform;
        },
    .mode =
        [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
           std::int32_t milliHertz) {
          if ((flags & WL_OUTPUT_MODE_CURRENT) != 0) {
            listener<WaylandOutput>(data).pending_.mode = {width, height};
            listener<WaylandOutput>(data).pending_.refreshRate = milliHertz / 1000.0;
          }
        },
    .done =
        [](void* data, wl_output*) {
          auto& described = listener<WaylandOutput>(data);
          described.current_ = described.pending_;
          described.known_ = true;
          described.changed_();
        },
    .scale = [](void* data, wl_output*, std::int32_t factor) { listener<WaylandOutput>(data).pending_.scale = factor; },
    .name = [](void* data, wl_output*, const char* name) { listener<WaylandOutput>(data).pending_.name = name; },
    .description = [](void*, wl_output*, const char*) {},
};

const zxdg_output_v1_listener WaylandOutput::xdgOutputListener = {
    .logical_position =
        [](void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
          listener<WaylandOutput>(data).pending_.logical.x = x;
          listener<WaylandOutput>(data).pending_.logical.y = y;
        },
    .logical_size =
        [](void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
          listener<WaylandOutput>(data).pending_.logical.width = width;
          listener<WaylandOutput>(data).pending_.logical.height = height;
        },
    // Since version 3 the output's own event stands for this one.
    .done = [](void*, zxdg_output_v1*) {},
    .name = [](void* data, zxdg_output_v1*, const char* name) { listener<WaylandOutput>(data).pending_.name = name; },
    .description = [](void*, zxdg_output_v1*, const char*) {},
};

WaylandOutput::WaylandOutput(std::uint32_t global, WaylandObject<wl_output> output, std::function<void()> changed)
    : id_(global), output_(std::move(output)), changed_(std::move(changed)) {
  wl_output_add_listener(object(), &outputListener, this);
}

void WaylandOutput::locate(zxdg_output_manager_v1* manager) {
  if (manager != nullptr && !xdgOutput_) {
    xdgOutput_.reset(zxdg_output_manager_v1_get_xdg_output(manager, object()));
    zxdg_output_v1_add_listener(xdgOutput_.get(), &xdgOutputListener, this);
  }
}

PixelSize WaylandOutput::upright() const {
  const bool turned = (current_.transform & 1) != 0;  // by 90 or 270 degrees, mirrored or not
  return turned ? PixelSize{current_.mode.height, current_.mode.width} : current_.mode;
}

PixelScale WaylandOutput::scale() const {
  const PixelSize size = upright();
  return {static_cast<double>(size.width) / place().width, static_cast<double>(size.height) / place().height};
}

Rect WaylandOutput::place() const {
  const PixelRect& logical = current_.logical;
  if (logical.width > 0) {
    return {double(logical.x), double(logical.y), double(logical.width), double(logical.height)};
  }
  const PixelSize size = upright();
  return {double(current_.x), double(current_.y), double(size.width) / current_.scale,
          double(size.height) / current_.scale};
}

}  // namespace quilex
