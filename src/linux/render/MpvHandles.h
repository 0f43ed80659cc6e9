#pragma once

#include <mpv/client.h>
#include <mpv/render.h>

#include <memory>

namespace quilex {

struct MpvDestroyer {
  void operator()(mpv_handle* core) const { mpv_terminate_destroy(core); }
  void operator()(mpv_render_context* context) const { mpv_render_context_free(context); }
  void operator()(char* text) const { mpv_free(text); }
};

/// Owns a core of the player library.
using MpvHandle = std::unique_ptr<mpv_handle, MpvDestroyer>;
/// Owns the render context of a core. It must be freed before the core.
using MpvRenderContext = std::unique_ptr<mpv_render_context, MpvDestroyer>;
/// Owns a text that the library returned.
using MpvText = std::unique_ptr<char, MpvDestroyer>;

}  // namespace quilex
