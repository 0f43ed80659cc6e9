#pragma once

#include <cstddef>

#include "linux/render/Renderer.h"

namespace quilex {

/// libmpv's software renderer, for the CPU renderers of all window systems. A core that cannot be rendered stops the
/// process.
MpvRenderContext makeSoftwareContext(mpv_handle* core);

constexpr std::size_t kPixelBytes = 4;

/// The bytes from one row of a picture to the next: rows that start at multiples of 64 bytes are the fastest to draw.
constexpr std::size_t softwareStride(int width) {
  constexpr std::size_t kRowAlignment = 64;
  return (static_cast<std::size_t>(width) * kPixelBytes + kRowAlignment - 1) / kRowAlignment * kRowAlignment;
}

/// Draws the next frame, or else the current one, as 32-bit pixels of bytes blue, green, red, unused. `stride` is in
/// bytes. False when it fails.
bool drawSoftware(mpv_render_context* context, PixelSize size, std::size_t stride, void* pixels);

}  // namespace quilex
