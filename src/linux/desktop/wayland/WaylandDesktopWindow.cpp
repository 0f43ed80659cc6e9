#include "linux/desktop/wayland/WaylandDesktopWindow.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace quilex {

namespace {

constexpr std::uint32_t kAllEdges = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                                    ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
/// Neither makes room for itself nor gives way to panels.
constexpr std::int32_t kWholeOutput = -1;
// A compositor that closes what it just opened is not to be asked all the time.
constexpr std::chrono::milliseconds kReopening{1000};

int pixels(double length) {
  return static_cast<int>(std::lround(length));
}

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
  content.reset();
}

void WaylandDesktopWindow::setContent(std::unique_ptr<VideoView> newView, std::function<void()> newClick) {
  view = std::move(newView);
  click = std::move(newClick);
  fitted.reset();
  fit();
}

// A hidden window stays as it is when monitors change. When it is shown again, that is where its screen was.
const WaylandOutput* WaylandDesktopWindow::output() const {
  const WaylandOutput* const exact = services.connection.outputOf(screen);
  return exact != nullptr || shell ? exact : services.connection.outputNamed(screen.name);
}

// An output may get another scale, or another output its place, without any change of the frame that the screen is
// known by.
void WaylandDesktopWindow::fit() {
  const WaylandOutput* const place = output();
  if (place == nullptr) {
    return;
  }
  const Fit now{place->global(), place->horizontalScale(), place->verticalScale()};
  const std::optional<Fit> before = std::exchange(fitted, now);
  if (before == now) {
    return;
  }
  if (before && before->output != now.output) {
    hide();
    reopening.reset();
  }
  const auto across = [&](double length) { return pixels(length * now.horizontalScale); };
  const auto down = [&](double length) { return pixels(length * now.verticalScale); };
  const Rect& frame = view->frame;
  const PixelSize whole{across(frame.width), down(frame.height)};
  const int left = std::clamp(across(-frame.x), 0, whole.width);
  const int top = std::clamp(down(-frame.y), 0, whole.height);
  const PixelRect part{left, top, std::min(across(screen.frame.width), whole.width - left),
                       std::min(down(screen.frame.height), whole.height - top)};
  content.reset();
  content.emplace(services.output, target, whole, part, [this] {
    if (wanted && !shell) {
      show();
    }
  });
  // Otherwise the compositor's word brings it.
  if (shell && shell->configured && !shell->frame) {
    content->setVisible(true);
    content->repaint();
  }
}

void WaylandDesktopWindow::order(WindowOrder where) {
  wanted = true;
  wantedOrder = where;
}

void WaylandDesktopWindow::settle() {
  if (view) {
    fit();
  }
  if (!wanted) {
    hide();
  } else if (!shell) {
    show();
  } else if (std::exchange(shell->order, wantedOrder) != wantedOrder) {
    zwlr_layer_surface_v1_set_layer(shell->layerSurface.get(), layerOf(wantedOrder));
    wl_surface_commit(shell->surface.get());
    services.connection.flush();
  }
}

void WaylandDesktopWindow::show() {
  const WaylandOutput* const place = output();
  if (place == nullptr || reopening || !content || !content->isReady()) {
    return;
  }
  WaylandConnection& connection = services.connection;
  shell = std::make_unique<Shell>();
  shell->order = wantedOrder;
  shell->surface.reset(wl_compositor_create_surface(connection.compositor()));
  shell->viewport.reset(wp_viewporter_get_viewport(connection.viewporter(), shell->surface.get()));
  shell->layerSurface.reset(zwlr_layer_shell_v1_get_layer_surface(
      connection.layerShell(), shell->surface.get(), place->object(), layerOf(wantedOrder), "quilexhelper"));
  zwlr_layer_surface_v1* const layer = shell->layerSurface.get();
  zwlr_layer_surface_v1_add_listener(layer, &shellListener, this);
  zwlr_layer_surface_v1_set_anchor(layer, kAllEdges);
  zwlr_layer_surface_v1_set_exclusive_zone(layer, kWholeOutput);
  zwlr_layer_surface_v1_set_size(layer, 0, 0);
  wl_surface_commit(shell->surface.get());
  services.targets.put(target, {shell->surface.get(), [this] { requestFrame(); }});
  connection.flush();
}

void WaylandDesktopWindow::hide() {
  if (!shell) {
    return;
  }
  content->setVisible(false);
  services.renderer.forget(target);
  services.targets.remove(target);
  shell.reset();
  services.connection.flush();
}

void WaylandDesktopWindow::configure(std::uint32_t serial, std::uint32_t width, std::uint32_t height) {
  zwlr_layer_surface_v1_ack_configure(shell->layerSurface.get(), serial);
  if (width == 0 || height == 0) {
    return;
  }
  const auto w = static_cast<std::int32_t>(width);
  const auto h = static_cast<std::int32_t>(height);
  // Whatever the scale is, one pixel of the picture is one of the display.
  wp_viewport_set_destination(shell->viewport.get(), w, h);
  const WaylandObject<wl_region> whole(wl_compositor_create_region(services.connection.compositor()));
  wl_region_add(whole.get(), 0, 0, w, h);
  wl_surface_set_opaque_region(shell->surface.get(), whole.get());
  shell->configured = true;
  content->setVisible(true);
  content->repaint();
}

void WaylandDesktopWindow::closed() {
  hide();
  reopening = services.runLoop.after(kReopening, [this] {
    reopening.reset();
    settle();
  });
}

void WaylandDesktopWindow::requestFrame() {
  shell->frame.reset(wl_surface_frame(shell->surface.get()));
  wl_callback_add_listener(shell->frame.get(), &frameListener, this);
  content->setVisible(false);
  lookedAt = false;
  services.frameAsked();
}

void WaylandDesktopWindow::frameDone() {
  shell->frame.reset();
  content->setVisible(true);
  content->catchUp();
  services.frameCame();
}

void WaylandDesktopWindow::button(std::uint32_t code, bool down) {
  if (down) {
    pressed = code == BTN_LEFT;
    if (pressed) {
      view->mouseDown();
    }
  } else if (code == BTN_LEFT && std::exchange(pressed, false) && click) {
    click();
  }
}

}  // namespace quilex
