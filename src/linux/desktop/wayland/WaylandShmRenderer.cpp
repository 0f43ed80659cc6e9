#include "linux/desktop/wayland/WaylandShmRenderer.h"

#include <algorithm>
#include <array>
#include <map>

#include "linux/render/SharedPages.h"
#include "linux/render/SoftwareRendering.h"

namespace quilex {

/// A compositor may read a picture until the next one is on the screen, so there are a few of them; all but the first
/// are made when they are needed.
class WaylandShmPicture : public Picture {
 public:
  WaylandShmPicture(WaylandShmRenderer& owner, PixelSize extent)
      : renderer_(owner), size_(extent), stride_(softwareStride(extent.width)) {
    renderer_.pictures_.push_back(this);
  }
  ~WaylandShmPicture() override { std::erase(renderer_.pictures_, this); }

  bool draw(mpv_render_context* context) override {
    auto* const free = std::ranges::find_if(buffers_, [](const auto& each) { return !each || each->reads == 0; });
    if (free == buffers_.end()) {
      return false;
    }
    if (!*free) {
      // One row more: a part that does not begin at the left ends beyond the last row by as much.
      *free = std::make_unique<Buffer>(renderer_.connection_.sharedMemory(),
                                       stride_ * (static_cast<std::size_t>(size_.height) + 1));
    }
    if (!drawSoftware(context, size_, stride_, (*free)->pages.data())) {
      return false;
    }
    front_ = free->get();
    return true;
  }

  void show(NativeWindow window, const PixelRect& part) override {
    const auto* const target = renderer_.targets_.find(window);
    if (front_ == nullptr || target == nullptr) {
      return;
    }
    View& view = front_->views[window];
    if (!view.buffer || view.part != part) {
      // The old one, if the compositor still reads it, will not be told of any more.
      front_->reads -= view.isRead ? 1 : 0;
      const auto offset = stride_ * static_cast<std::size_t>(part.y) + kPixelBytes * static_cast<std::size_t>(part.x);
      view.part = part;
      view.isRead = false;
      view.owner = front_;
      view.buffer.reset(wl_shm_pool_create_buffer(front_->pool.get(), static_cast<std::int32_t>(offset), part.width,
                                                  part.height, static_cast<std::int32_t>(stride_),
                                                  WL_SHM_FORMAT_XRGB8888));
      wl_buffer_add_listener(view.buffer.get(), &kBufferListener, &view);
    }
    target->aboutToShow();
    wl_surface_attach(target->surface, view.buffer.get(), 0, 0);
    wl_surface_damage_buffer(target->surface, 0, 0, part.width, part.height);
    wl_surface_commit(target->surface);
    front_->reads += view.isRead ? 0 : 1;
    view.isRead = true;
    renderer_.connection_.flush();
  }

  void forget(NativeWindow window) {
    for (const auto& buffer : buffers_) {
      if (!buffer) {
        continue;
      }
      if (const auto view = buffer->views.find(window); view != buffer->views.end()) {
        buffer->reads -= view->second.isRead ? 1 : 0;
        buffer->views.erase(view);
      }
    }
  }

 private:
  struct Buffer;
  /// A window's part of a buffer. Each surface has one of its own, because it is undefined when one that is on several
  /// surfaces is released.
  struct View {
    PixelRect part;
    bool isRead = false;
    Buffer* owner = nullptr;
    WaylandObject<wl_buffer> buffer;
  };
  struct Buffer {
    Buffer(wl_shm* sharedMemory, std::size_t bytes)
        : pages(bytes), pool(wl_shm_create_pool(sharedMemory, pages.descriptor(), static_cast<std::int32_t>(bytes))) {}
    SharedPages pages;
    WaylandObject<wl_shm_pool> pool;
    std::map<NativeWindow, View> views;
    /// How many views the compositor may still read.
    int reads = 0;
  };
  static constexpr wl_buffer_listener kBufferListener = {.release = [](void* data, wl_buffer*) {
    View& view = *static_cast<View*>(data);
    view.isRead = false;
    --view.owner->reads;
  }};

  WaylandShmRenderer& renderer_;
  PixelSize size_;
  std::size_t stride_;
  std::array<std::unique_ptr<Buffer>, 3> buffers_;
  /// Holds the frame that is shown; none before the first.
  Buffer* front_ = nullptr;
};

MpvRenderContext WaylandShmRenderer::makeContext(mpv_handle* core) {
  return makeSoftwareContext(core);
}

std::unique_ptr<Picture> WaylandShmRenderer::makePicture(PixelSize size) {
  return std::make_unique<WaylandShmPicture>(*this, size);
}

void WaylandShmRenderer::forget(NativeWindow window) {
  for (WaylandShmPicture* picture : pictures_) {
    picture->forget(window);
  }
}

}  // namespace quilex
