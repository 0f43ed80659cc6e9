#include "linux/desktop/wayland/WaylandDesktopWindow.h"

#include <linux/input-event-codes.h>

#include <chrono>
#include <utility>

namespace quilex {

namespace {

constexpr std::uint32_t kAllEdges = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                                    ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
// Neither makes room for itself nor gives way to panels.
constexpr std::int32_t kWholeOutput = -1;
// A compositor may close what it just opened, again and again.
constexpr std::chrono::milliseconds kReopening{1000};

std::uint32_t layerOf(WindowOrder order) {
  return order == WindowOrder::back ? ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND : ZWLR_LAYER_SHELL_V1_LAYER_BOTTOM;
}

}  // namespace

const zwlr_layer_surface_v1_listener WaylandDesktopWindow::shellListener = {
    .configure = [](void* data, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t width,
                    std::uint32_t height) { listener<WaylandDesktopWindow>(data).configure(serial, width, height); },
    .closed = [](void* data, zwlr_layer_surface_v1*) { listener<WaylandDesktopWindow>(data).closed(); },
};

const wl_callback_listener WaylandDesktopWindow::frameListener = {
    .done = [](void* data, wl_callback*, std::uint32_t) { listener<WaylandDesktopWindow>(data).frameDone(); },
};

WaylandDesktopWindow::~WaylandDesktopWindow() {
  hide();
  content_.reset();
}

void WaylandDesktopWindow::setContent(std::unique_ptr<VideoView> view, std::function<void()> click) {
  view_ = std::move(view);
  click_ = std::move(click);
  fitted_.reset();
  fit();
}

// A hidden window stays as it is when outputs change. When it is shown again, it is on the output where it was.
const WaylandOutput* WaylandDesktopWindow::output() const {
  const WaylandOutput* const exact = services_.connection.outputOf(screen_);
  return exact != nullptr || shell_ ? exact : services_.connection.outputNamed(screen_.name);
}

// An output may get another scale, and its place may go to another output, while the screen's own place stays the same.
void WaylandDesktopWindow::fit() {
  const WaylandOutput* const place = output();
  if (place == nullptr) {
    return;
  }
  const Fit now{place->global(), place->scale()};
  const std::optional<Fit> before = std::exchange(fitted_, now);
  if (before == now) {
    return;
  }
  if (before && before->output != now.output) {
    hide();
    reopening_.reset();
  }
  makeContent(now.scale);
}

void WaylandDesktopWindow::makeContent(PixelScale scale) {
  content_.reset();
  content_.emplace(services_.output, shownPart(view_->frame, screen_.frame, scale), [this] {
    if (wanted_ && !shell_) {
      show();
    }
  });
  // Otherwise it is shown with the next configure event or frame callback.
  if (isShown() && !waitsForCallback()) {
    content_->setTarget(shell_->target.get());
    content_->repaint();
  }
}

void WaylandDesktopWindow::order(WindowOrder where) {
  wanted_ = true;
  wantedOrder_ = where;
}

void WaylandDesktopWindow::settle() {
  if (view_) {
    fit();
  }
  if (!wanted_) {
    hide();
  } else if (!shell_) {
    show();
  } else if (std::exchange(shell_->order, wantedOrder_) != wantedOrder_) {
    zwlr_layer_surface_v1_set_layer(shell_->layerSurface.get(), layerOf(wantedOrder_));
    wl_surface_commit(shell_->surface.get());
    services_.connection.flush();
  }
}

void WaylandDesktopWindow::show() {
  const WaylandOutput* const place = output();
  if (place == nullptr || reopening_ || !content_ || !content_->isReady()) {
    return;
  }
  WaylandConnection& connection = services_.connection;
  shell_ = std::make_unique<Shell>();
  shell_->order = wantedOrder_;
  shell_->surface.reset(wl_compositor_create_surface(connection.compositor()));
  shell_->viewport.reset(wp_viewporter_get_viewport(connection.viewporter(), shell_->surface.get()));
  shell_->layerSurface.reset(zwlr_layer_shell_v1_get_layer_surface(
      connection.layerShell(), shell_->surface.get(), place->object(), layerOf(wantedOrder_), "quilexhelper"));
  zwlr_layer_surface_v1* const layer = shell_->layerSurface.get();
  zwlr_layer_surface_v1_add_listener(layer, &shellListener, this);
  zwlr_layer_surface_v1_set_anchor(layer, kAllEdges);
  zwlr_layer_surface_v1_set_exclusive_zone(layer, kWholeOutput);
  zwlr_layer_surface_v1_set_size(layer, 0, 0);
  wl_surface_commit(shell_->surface.get());
  shell_->target = services_.makeTarget(shell_->surface.get(), [this] { requestCallback(); });
  connection.flush();
}

void WaylandDesktopWindow::hide() {
  if (!shell_) {
    return;
  }
  content_->setTarget(nullptr);
  shell_.reset();
  services_.connection.flush();
}

void WaylandDesktopWindow::configure(std::uint32_t serial, std::uint32_t width, std::uint32_t height) {
  zwlr_layer_surface_v1_ack_configure(shell_->layerSurface.get(), serial);
  if (width == 0 || height == 0) {
    return;
  }
  const auto w = static_cast<std::int32_t>(width);
  const auto h = static_cast<std::int32_t>(height);
  // At any scale, one pixel of the picture is one of the display.
  wp_viewport_set_destination(shell_->viewport.get(), w, h);
  const WaylandObject<wl_region> whole(wl_compositor_create_region(services_.connection.compositor()));
  wl_region_add(whole.get(), 0, 0, w, h);
  wl_surface_set_opaque_region(shell_->surface.get(), whole.get());
  shell_->configured = true;
  content_->setTarget(shell_->target.get());
  content_->repaint();
}

void WaylandDesktopWindow::closed() {
  hide();
  reopening_ = services_.runLoop.after(kReopening, [this] {
    reopening_.reset();
    settle();
  });
}

void WaylandDesktopWindow::requestCallback() {
  shell_->frameCallback.reset(wl_surface_frame(shell_->surface.get()));
  wl_callback_add_listener(shell_->frameCallback.get(), &frameListener, this);
  content_->setTarget(nullptr);
  waitNoted_ = false;
  services_.waitBegan();
}

void WaylandDesktopWindow::frameDone() {
  shell_->frameCallback.reset();
  content_->setTarget(shell_->target.get());
  content_->catchUp();
  services_.waitEnded();
}

void WaylandDesktopWindow::button(std::uint32_t code, bool down) {
  if (down) {
    pressed_ = code == BTN_LEFT;
    if (pressed_) {
      view_->mouseDown();
    }
  } else if (code == BTN_LEFT && std::exchange(pressed_, false) && click_) {
    click_();
  }
}

}  // namespace quilex
