#pragma once

#include <cstddef>

#include "linux/render/Renderer.h"

namespace quilex {

/// libmpv's software rendering, common to the window systems.
MpvRenderContext makeSoftwareContext(mpv_handle* core);

/// Rows that start at multiples of this many bytes are the fastest to draw.
constexpr std::size_t kRowAlignment = 64;

/// Draws the next (or else the current) frame as 32-bit pixels of bytes blue, green, red, unused.
bool drawSoftware(mpv_render_context* context, PixelSize size, std::size_t stride, void* pixels);

}  // namespace quilex
