#pragma once

#include <mpv/client.h>

#include <memory>

namespace quilex {

struct MpvDestroyer {
  void operator()(mpv_handle* handle) const { mpv_terminate_destroy(handle); }
};

/// Owns a core of the player library.
using MpvHandle = std::unique_ptr<mpv_handle, MpvDestroyer>;

}  // namespace quilex
