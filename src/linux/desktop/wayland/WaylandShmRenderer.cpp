#include "linux/desktop/wayland/WaylandShmRenderer.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "linux/render/SharedPages.h"
#include "linux/render/SoftwareRendering.h"

namespace quilex {

namespace {

/// Memory for a picture. The compositor may still read it after something else was drawn into another one.
struct Buffer {
  Buffer(wl_shm* sharedMemory, std::size_t bytes)
      : pages(bytes), pool(wl_shm_create_pool(sharedMemory, pages.descriptor(), static_cast<std::int32_t>(bytes))) {}
  SharedPages pages;
  WaylandObject<wl_shm_pool> pool;
  /// How many views the compositor may still read.
  int reads = 0;
};

/// A part of a buffer, for one surface: the protocol leaves undefined when a wl_buffer that is on several surfaces is
/// released.
class BufferView {
 public:
  BufferView(const std::shared_ptr<Buffer>& buffer, const PixelRect& part, std::size_t stride)
      : buffer_(buffer), part_(part) {
    const auto offset = stride * static_cast<std::size_t>(part.y) + kPixelBytes * static_cast<std::size_t>(part.x);
    object_.reset(wl_shm_pool_create_buffer(buffer->pool.get(), static_cast<std::int32_t>(offset), part.width,
                                            part.height, static_cast<std::int32_t>(stride), WL_SHM_FORMAT_XRGB8888));
    wl_buffer_add_listener(object_.get(), &kListener, this);
  }
  ~BufferView() { setRead(false); }
  BufferView(const BufferView&) = delete;
  BufferView& operator=(const BufferView&) = delete;

  wl_buffer* object() const { return object_.get(); }
  const PixelRect& part() const { return part_; }
  std::shared_ptr<Buffer> buffer() const { return buffer_.lock(); }
  /// Whether the compositor may read the view.
  void setRead(bool read) {
    if (const auto buffer = buffer_.lock(); buffer && isRead_ != read) {
      buffer->reads += read ? 1 : -1;
    }
    isRead_ = read;
  }

 private:
  static void released(void* data, wl_buffer* /*object*/) { listener<BufferView>(data).setRead(false); }
  static constexpr wl_buffer_listener kListener = {.release = released};

  std::weak_ptr<Buffer> buffer_;
  PixelRect part_;
  bool isRead_ = false;
  WaylandObject<wl_buffer> object_;
};

class WaylandShmTarget : public RenderTarget {
 public:
  WaylandShmTarget(wl_surface* surface, std::function<void()> aboutToShow)
      : surface_(surface), aboutToShow_(std::move(aboutToShow)) {}

  void show(const std::shared_ptr<Buffer>& buffer, const PixelRect& part, std::size_t stride) {
    BufferView& view = viewOf(buffer, part, stride);
    aboutToShow_();
    wl_surface_attach(surface_, view.object(), 0, 0);
    wl_surface_damage_buffer(surface_, 0, 0, part.width, part.height);
    wl_surface_commit(surface_);
    view.setRead(true);
  }

 private:
  BufferView& viewOf(const std::shared_ptr<Buffer>& buffer, const PixelRect& part, std::size_t stride) {
    // The others are of pictures that are gone, or of parts that are not shown any more.
    std::erase_if(views_, [&](const auto& view) { return !view->buffer() || view->part() != part; });
    const auto known = std::ranges::find_if(views_, [&](const auto& view) { return view->buffer() == buffer; });
    return known != views_.end() ? **known : *views_.emplace_back(std::make_unique<BufferView>(buffer, part, stride));
  }

  wl_surface* surface_;
  std::function<void()> aboutToShow_;
  std::vector<std::unique_ptr<BufferView>> views_;
};

/// Drawn into one of a few buffers, since a compositor may read one until the next is on the screen. All but the first
/// are made when they are needed.
class WaylandShmPicture : public Picture {
 public:
  WaylandShmPicture(WaylandConnection& connection, PixelSize size)
      : connection_(connection), size_(size), stride_(softwareStride(size.width)) {}

  bool draw(mpv_render_context* context) override {
    auto* const free = std::ranges::find_if(buffers_, [](const auto& each) { return !each || each->reads == 0; });
    if (free == buffers_.end()) {
      return false;
    }
    if (!*free) {
      // One row more: a part that does not begin at the left ends beyond the last row by as much.
      *free =
          std::make_shared<Buffer>(connection_.sharedMemory(), stride_ * (static_cast<std::size_t>(size_.height) + 1));
    }
    if (!drawSoftware(context, size_, stride_, (*free)->pages.data())) {
      return false;
    }
    front_ = *free;
    return true;
  }

  void show(RenderTarget& target, const PixelRect& part) override {
    if (front_) {
      static_cast<WaylandShmTarget&>(target).show(front_, part, stride_);
      connection_.flush();
    }
  }

 private:
  WaylandConnection& connection_;
  PixelSize size_;
  std::size_t stride_;
  std::array<std::shared_ptr<Buffer>, 3> buffers_;
  /// The one that holds the frame that is shown; none before the first.
  std::shared_ptr<Buffer> front_;
};

}  // namespace

std::unique_ptr<RenderTarget> WaylandShmRenderer::makeTarget(wl_surface* surface, std::function<void()> aboutToShow) {
  return std::make_unique<WaylandShmTarget>(surface, std::move(aboutToShow));
}

MpvRenderContext WaylandShmRenderer::makeContext(mpv_handle* core) {
  return makeSoftwareContext(core);
}

std::unique_ptr<Picture> WaylandShmRenderer::makePicture(PixelSize size) {
  return std::make_unique<WaylandShmPicture>(connection_, size);
}

}  // namespace quilex
