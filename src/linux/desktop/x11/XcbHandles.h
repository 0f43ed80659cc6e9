#pragma once

#include <xcb/shm.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

namespace quilex {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

/// Owns a reply, an error or an event of xcb.
template <typename Type>
using XcbPointer = std::unique_ptr<Type, FreeDeleter>;

/// The type of an event without the mark of events that another client sent.
inline std::uint8_t eventType(const xcb_generic_event_t& event) {
  return event.response_type & 0x7F;
}
inline bool wasSentByClient(const xcb_generic_event_t& event) {
  return (event.response_type & 0x80) != 0;
}

/// The depth of windows with an alpha channel.
constexpr std::uint8_t kDepthWithAlpha = 32;

/// Owns an object of the X server. The connection must outlive it.
template <auto destroy>
class XcbObject {
 public:
  /// Owns nothing.
  XcbObject() = default;
  /// A new identifier, for the request that makes the object.
  explicit XcbObject(xcb_connection_t* connection) : connection_(connection), id_(xcb_generate_id(connection)) {}
  ~XcbObject() {
    if (connection_ != nullptr) {
      destroy(connection_, id_);
    }
  }
  XcbObject(XcbObject&& other) noexcept : connection_(std::exchange(other.connection_, nullptr)), id_(other.id_) {}
  XcbObject& operator=(XcbObject&& other) noexcept {
    std::swap(connection_, other.connection_);
    std::swap(id_, other.id_);
    return *this;
  }

  explicit operator bool() const { return connection_ != nullptr; }
  std::uint32_t id() const { return id_; }
  /// Forgets an object that could not be made.
  void release() { connection_ = nullptr; }

 private:
  xcb_connection_t* connection_ = nullptr;
  std::uint32_t id_ = XCB_NONE;
};

using XcbColormap = XcbObject<xcb_free_colormap>;
using XcbGraphicsContext = XcbObject<xcb_free_gc>;
using XcbPixmap = XcbObject<xcb_free_pixmap>;
using XcbRegion = XcbObject<xcb_xfixes_destroy_region>;
using XcbShmSegment = XcbObject<xcb_shm_detach>;
using XcbWindow = XcbObject<xcb_destroy_window>;

}  // namespace quilex
