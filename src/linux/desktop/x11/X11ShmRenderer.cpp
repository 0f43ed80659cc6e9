#include "linux/desktop/x11/X11ShmRenderer.h"

#include <fcntl.h>
#include <xcb/shm.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "linux/render/SharedPages.h"
#include "linux/render/SoftwareRendering.h"

namespace quilex {

namespace {

struct X11ShmTarget : RenderTarget {
  explicit X11ShmTarget(xcb_window_t shownIn) : window(shownIn) {}
  const xcb_window_t window;
};

}  // namespace

/// Drawn into one buffer, which stays in the processor's cache from frame to frame, or into a second one while the
/// server still reads the first.
class X11ShmPicture : public Picture {
 public:
  X11ShmPicture(X11ShmRenderer& renderer, PixelSize size)
      : renderer_(renderer), size_(size), stride_(softwareStride(size.width)) {}

  ~X11ShmPicture() override {
    for (const auto& buffer : buffers_) {
      if (buffer && buffer->segment) {
        renderer_.reads_.erase(buffer->segment.id());
      }
    }
  }

  bool draw(mpv_render_context* context) override {
    auto* const free = std::ranges::find_if(buffers_, [&](const auto& each) {
      return !each || !each->segment || renderer_.reads_[each->segment.id()] == 0;
    });
    if (free == buffers_.end()) {
      return false;
    }
    if (!*free) {
      *free = std::make_unique<Buffer>(stride_ * static_cast<std::size_t>(size_.height));
      if (renderer_.shares_) {
        share(**free);
      }
    }
    if (!drawSoftware(context, size_, stride_, (*free)->pages.data())) {
      return false;
    }
    front_ = free->get();
    return true;
  }

  void show(RenderTarget& target, const PixelRect& part) override {
    if (front_ == nullptr) {
      return;
    }
    const xcb_window_t window = static_cast<const X11ShmTarget&>(target).window;
    const Buffer& shown = *front_;
    if (!shown.segment) {
      send(window, part, shown);
      return;
    }
    xcb_shm_put_image(xcb(), window, renderer_.graphics_.id(), static_cast<std::uint16_t>(stride_ / kPixelBytes),
                      static_cast<std::uint16_t>(size_.height), static_cast<std::uint16_t>(part.x),
                      static_cast<std::uint16_t>(part.y), static_cast<std::uint16_t>(part.width),
                      static_cast<std::uint16_t>(part.height), 0, 0, X11Connection::kDepth, XCB_IMAGE_FORMAT_Z_PIXMAP,
                      1, shown.segment.id(), 0);
    ++renderer_.reads_[shown.segment.id()];
  }

 private:
  struct Buffer {
    explicit Buffer(std::size_t bytes) : pages(bytes) {}
    SharedPages pages;
    /// None where memory cannot be shared.
    XcbShmSegment segment;
  };

  xcb_connection_t* xcb() const { return renderer_.x11_.xcb(); }

  void share(Buffer& buffer) {
    XcbShmSegment segment(xcb());
    // The request takes ownership of the descriptor.
    const int descriptor = fcntl(buffer.pages.descriptor(), F_DUPFD_CLOEXEC, 0);
    const auto cookie = xcb_shm_attach_fd_checked(xcb(), segment.id(), descriptor, 1);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(xcb(), cookie));
    if (error) {
      segment.release();
      renderer_.shares_ = false;
    } else {
      buffer.segment = std::move(segment);
    }
  }

  // Sends bands of rows that fit into a request.
  void send(xcb_window_t window, const PixelRect& part, const Buffer& buffer) {
    const std::size_t rowBytes = static_cast<std::size_t>(part.width) * kPixelBytes;
    const std::size_t most = std::size_t{xcb_get_maximum_request_length(xcb())} * 4 - 64;
    const int rows =
        static_cast<int>(std::clamp<std::size_t>(most / rowBytes, 1, static_cast<std::size_t>(part.height)));
    std::vector<std::byte> band(rowBytes * static_cast<std::size_t>(rows));
    for (int top = 0; top < part.height; top += rows) {
      const int height = std::min(rows, part.height - top);
      for (int row = 0; row < height; ++row) {
        std::memcpy(band.data() + rowBytes * static_cast<std::size_t>(row),
                    buffer.pages.data() + stride_ * static_cast<std::size_t>(part.y + top + row) +
                        kPixelBytes * static_cast<std::size_t>(part.x),
                    rowBytes);
      }
      xcb_put_image(xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, renderer_.graphics_.id(),
                    static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(height), 0,
                    static_cast<std::int16_t>(top), 0, X11Connection::kDepth,
                    static_cast<std::uint32_t>(rowBytes * static_cast<std::size_t>(height)),
                    reinterpret_cast<const std::uint8_t*>(band.data()));
    }
  }

  X11ShmRenderer& renderer_;
  PixelSize size_;
  std::size_t stride_;
  std::array<std::unique_ptr<Buffer>, 2> buffers_;
  /// Holds the frame that is shown; none before the first.
  const Buffer* front_ = nullptr;
};

X11ShmRenderer::X11ShmRenderer(X11Connection& x11)
    : x11_(x11), graphics_(x11.xcb()), events_(x11.observeEvents([this](const auto& event) { handle(event); })) {
  // A graphics context serves all drawables of its depth, so one that is made for a small pixmap serves the windows.
  const XcbPixmap sample(x11.xcb());
  xcb_create_pixmap(x11.xcb(), X11Connection::kDepth, sample.id(), x11.root(), 1, 1);
  const std::uint32_t noExposures = 0;
  xcb_create_gc(x11.xcb(), graphics_.id(), sample.id(), XCB_GC_GRAPHICS_EXPOSURES, &noExposures);

  const auto* extension = xcb_get_extension_data(x11.xcb(), &xcb_shm_id);
  if (extension != nullptr && extension->present != 0) {
    const XcbPointer<xcb_shm_query_version_reply_t> version(
        xcb_shm_query_version_reply(x11.xcb(), xcb_shm_query_version(x11.xcb()), nullptr));
    shares_ = version && (version->major_version > 1 || version->minor_version >= 2);
    firstShmEvent_ = extension->first_event;
    shmOpcode_ = extension->major_opcode;
  }
}

void X11ShmRenderer::handle(const xcb_generic_event_t& event) {
  if (firstShmEvent_ == 0) {
    return;
  }
  if (event.response_type == 0 && reinterpret_cast<const xcb_generic_error_t&>(event).major_code == shmOpcode_) {
    // A request that failed is never completed.
    reads_.clear();
  } else if (eventType(event) == firstShmEvent_ + XCB_SHM_COMPLETION) {
    const auto& done = reinterpret_cast<const xcb_shm_completion_event_t&>(event);
    if (const auto entry = reads_.find(done.shmseg); entry != reads_.end() && entry->second > 0) {
      --entry->second;
    }
  }
}

std::unique_ptr<RenderTarget> X11ShmRenderer::makeTarget(xcb_window_t window) {
  return std::make_unique<X11ShmTarget>(window);
}

MpvRenderContext X11ShmRenderer::makeContext(mpv_handle* core) {
  return makeSoftwareContext(core);
}

std::unique_ptr<Picture> X11ShmRenderer::makePicture(PixelSize size) {
  return std::make_unique<X11ShmPicture>(*this, size);
}

}  // namespace quilex
