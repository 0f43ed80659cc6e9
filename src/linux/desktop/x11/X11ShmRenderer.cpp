#include "linux/desktop/x11/X11ShmRenderer.h"

#include <fcntl.h>
#include <xcb/shm.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

#include "linux/render/SharedPages.h"
#include "linux/render/SoftwareRendering.h"

namespace quilex {

namespace {}  // namespace

/// One buffer, which stays in the processor's cache from frame to frame; and a second one for when the server still
/// reads the first. What is shown stays as it is, for repainting, until the next frame.
class X11ShmPicture : public Picture {
 public:
  X11ShmPicture(X11ShmRenderer& owner, PixelSize extent)
      : renderer_(owner), size_(extent), stride_(softwareStride(extent.width)) {}

  ~X11ShmPicture() override {
    for (const auto& buffer : buffers_) {
      if (buffer && buffer->segment != 0) {
        xcb_shm_detach(connection(), buffer->segment);
        renderer_.reads.erase(buffer->segment);
      }
    }
  }

  bool draw(mpv_render_context* context) override {
    auto* const free = std::find_if(buffers_.begin(), buffers_.end(), [&](const auto& each) {
      return !each || each->segment == 0 || renderer_.reads[each->segment] == 0;
    });
    if (free == buffers_.end()) {
      return false;
    }
    if (!*free) {
      *free = std::make_unique<Buffer>(stride_ * static_cast<std::size_t>(size_.height));
      if (renderer_.shares) {
        share(**free);
      }
    }
    if (!drawSoftware(context, size_, stride_, (*free)->pages.data())) {
      return false;
    }
    front_ = free->get();
    return true;
  }

  void show(NativeWindow window, const PixelRect& part) override {
    if (front_ == nullptr) {
      return;
    }
    const Buffer& shown = *front_;
    if (shown.segment == 0) {
      send(window, part, shown);
      return;
    }
    xcb_shm_put_image(connection(), window, renderer_.context, static_cast<std::uint16_t>(stride_ / kPixelBytes),
                      static_cast<std::uint16_t>(size_.height), static_cast<std::uint16_t>(part.x),
                      static_cast<std::uint16_t>(part.y), static_cast<std::uint16_t>(part.width),
                      static_cast<std::uint16_t>(part.height), 0, 0, X11Connection::kDepth, XCB_IMAGE_FORMAT_Z_PIXMAP,
                      1, shown.segment, 0);
    ++renderer_.reads[shown.segment];
  }

 private:
  struct Buffer {
    explicit Buffer(std::size_t bytes) : pages(bytes) {}
    SharedPages pages;
    xcb_shm_seg_t segment = 0;
  };

  xcb_connection_t* connection() const { return renderer_.connection.xcb(); }

  void share(Buffer& buffer) {
    const xcb_shm_seg_t segment = xcb_generate_id(connection());
    // The call takes the descriptor it is given.
    const int descriptor = fcntl(buffer.pages.descriptor(), F_DUPFD_CLOEXEC, 0);
    const auto cookie = xcb_shm_attach_fd_checked(connection(), segment, descriptor, 1);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection(), cookie));
    if (error) {
      renderer_.shares = false;
    } else {
      buffer.segment = segment;
    }
  }

  // In bands of rows that fit into a request.
  void send(NativeWindow window, const PixelRect& part, const Buffer& buffer) {
    const std::size_t rowBytes = static_cast<std::size_t>(part.width) * kPixelBytes;
    const std::size_t most = std::size_t{xcb_get_maximum_request_length(connection())} * 4 - 64;
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
      xcb_put_image(connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, renderer_.context,
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
    : connection(x11), context(xcb_generate_id(x11.xcb())), events(x11.observeEvents([this](const auto& event) {
        if (firstShmEvent != 0 && event.response_type == 0 &&
            reinterpret_cast<const xcb_generic_error_t&>(event).major_code == shmOpcode) {
          // A request that failed is not completed either.
          reads.clear();
        } else if (firstShmEvent != 0 && eventType(event) == firstShmEvent + XCB_SHM_COMPLETION) {
          const auto& done = reinterpret_cast<const xcb_shm_completion_event_t&>(event);
          if (const auto entry = reads.find(done.shmseg); entry != reads.end() && entry->second > 0) {
            --entry->second;
          }
        }
      })) {
  // A graphics context serves all drawables of its depth, so one made for a small pixmap serves the windows.
  const xcb_pixmap_t sample = xcb_generate_id(x11.xcb());
  xcb_create_pixmap(x11.xcb(), X11Connection::kDepth, sample, x11.root(), 1, 1);
  const std::uint32_t noExposures = 0;
  xcb_create_gc(x11.xcb(), context, sample, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
  xcb_free_pixmap(x11.xcb(), sample);

  const auto* extension = xcb_get_extension_data(x11.xcb(), &xcb_shm_id);
  if (extension != nullptr && extension->present != 0) {
    const XcbPointer<xcb_shm_query_version_reply_t> version(
        xcb_shm_query_version_reply(x11.xcb(), xcb_shm_query_version(x11.xcb()), nullptr));
    shares = version && (version->major_version > 1 || version->minor_version >= 2);
    firstShmEvent = extension->first_event;
    shmOpcode = extension->major_opcode;
  }
}

X11ShmRenderer::~X11ShmRenderer() {
  xcb_free_gc(connection.xcb(), context);
}

MpvRenderContext X11ShmRenderer::makeContext(mpv_handle* core) {
  return makeSoftwareContext(core);
}

std::unique_ptr<Picture> X11ShmRenderer::makePicture(PixelSize size) {
  return std::make_unique<X11ShmPicture>(*this, size);
}

}  // namespace quilex
