#include "linux/desktop/wayland/WaylandLayerSurface.h"

#include <algorithm>
#include <chrono>

namespace quilex {

namespace {

// Neither makes room for itself nor gives way to panels; or gives way.
constexpr std::int32_t kWholeOutput = -1;
constexpr std::int32_t kBesidePanels = 0;
// A compositor may close what it just opened, again and again.
constexpr std::chrono::milliseconds kReopening{1000};

}  // namespace

const zwlr_layer_surface_v1_listener WaylandLayerSurface::shellListener = {
    .configure = [](void* data, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t width,
                    std::uint32_t height) { listener<WaylandLayerSurface>(data).configure(serial, width, height); },
    .closed = [](void* data, zwlr_layer_surface_v1*) { listener<WaylandLayerSurface>(data).closed(); },
};

const wl_callback_listener WaylandLayerSurface::frameListener = {
    .done = [](void* data, wl_callback*, std::uint32_t) { listener<WaylandLayerSurface>(data).frameDone(); },
};

WaylandLayerSurface::~WaylandLayerSurface() {
  hide();
  content_.reset();
}

void WaylandLayerSurface::update(bool wanted, const WaylandOutput* place, const Subject& subject) {
  wanted_ = wanted;
  if (place != nullptr) {
    fit({place->global(), place->scale(), subject});
  }
  if (!wanted_) {
    hide();
  } else if (!shell_ && place != nullptr && !reopening_ && content_->isReady()) {
    show(*place);
  }
}

// An output may get another scale, and its place may go to another output, while the screen's own place stays the same.
void WaylandLayerSurface::fit(const Fit& now) {
  const std::optional<Fit> before = std::exchange(fitted_, now);
  if (before == now) {
    return;
  }
  if (before && before->output != now.output) {
    hide();
    reopening_.reset();
  }
  if (shell_ && before && before->subject.part != now.subject.part) {
    setExtent();
    wl_surface_commit(shell_->surface.get());
  }
  findPlace();
  makeContent();
  showContent();
}

// While the surface waits, its content is shown with the next configure event or frame callback.
void WaylandLayerSurface::showContent() {
  if (isShown() && !waitsForCallback()) {
    setInputRegion();
    content_->setTarget(shell_->target.get());
    content_->repaint();
  }
}

void WaylandLayerSurface::makeContent() {
  const Rect part = covered();
  const Rect& view = fitted_->subject.view;
  content_.reset();
  content_.emplace(services_.output,
                   shownPart({view.x - part.x, view.y - part.y, view.width, view.height}, part, fitted_->scale),
                   [this] {
                     if (wanted_ && !shell_) {
                       changed_();
                     }
                   });
}

// Until it is known where panels are, as much of the picture is hidden on either side.
Rect WaylandLayerSurface::covered() const {
  const Rect& screen = fitted_->subject.screen;
  if (layer_ == Layer::background || !isShown()) {
    return fitted_->subject.part;
  }
  if (shell_->place) {
    return *shell_->place;
  }
  const double width = std::min<double>(shell_->size->width, screen.width);
  const double height = std::min<double>(shell_->size->height, screen.height);
  return {(screen.width - width) / 2, (screen.height - height) / 2, width, height};
}

void WaylandLayerSurface::findPlace() {
  if (!isShown()) {
    return;
  }
  shell_->place.reset();
  shell_->question.reset();
  if (layer_ == Layer::background || !leavesRoom()) {
    return;
  }
  shell_->question = std::make_unique<LayerSurfacePosition>(
      services_.connection, shell_->layerSurface.get(), [this](double x, double y) {
        shell_->question.reset();
        const Rect& screen = fitted_->subject.screen;
        const Rect place{x, y, double(shell_->size->width), double(shell_->size->height)};
        if (x >= 0 && y >= 0 && x + place.width <= screen.width && y + place.height <= screen.height) {
          shell_->place = place;
          makeContent();
          showContent();
          changed_();
        }
      });
}

bool WaylandLayerSurface::leavesRoom() const {
  return isShown() &&
         (shell_->size->width < fitted_->subject.screen.width || shell_->size->height < fitted_->subject.screen.height);
}

std::optional<Rect> WaylandLayerSurface::leftRoom() const {
  if (!leavesRoom()) {
    return std::nullopt;
  }
  const Rect whole{0, 0, fitted_->subject.screen.width, fitted_->subject.screen.height};
  const Rect& place = shell_->place.value_or(Rect{});
  const double right = place.x + place.width;
  const double bottom = place.y + place.height;
  if (place.width == whole.width && (place.y == 0 || bottom == whole.height)) {
    return place.y == 0 ? Rect{0, bottom, whole.width, whole.height - bottom} : Rect{0, 0, whole.width, place.y};
  }
  if (place.height == whole.height && (place.x == 0 || right == whole.width)) {
    return place.x == 0 ? Rect{right, 0, whole.width - right, whole.height} : Rect{0, 0, place.x, whole.height};
  }
  return whole;
}

// A length between two anchored edges is the compositor's to choose.
void WaylandLayerSurface::setExtent() {
  const Rect& screen = fitted_->subject.screen;
  const Rect& part = fitted_->subject.part;
  std::uint32_t edges = 0;
  const auto anchor = [&](bool touches, std::uint32_t edge) { edges |= touches ? edge : 0; };
  anchor(part.x == 0, ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
  anchor(part.y == 0, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP);
  anchor(part.x + part.width == screen.width, ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT);
  anchor(part.y + part.height == screen.height, ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM);
  const auto length = [](double wanted, double whole) {
    return wanted == whole ? 0 : static_cast<std::uint32_t>(wanted);
  };
  zwlr_layer_surface_v1_set_anchor(shell_->layerSurface.get(), edges);
  zwlr_layer_surface_v1_set_size(shell_->layerSurface.get(), length(part.width, screen.width),
                                 length(part.height, screen.height));
}

void WaylandLayerSurface::show(const WaylandOutput& place) {
  WaylandConnection& connection = services_.connection;
  shell_ = std::make_unique<Shell>();
  shell_->surface.reset(wl_compositor_create_surface(connection.compositor()));
  shell_->viewport.reset(wp_viewporter_get_viewport(connection.viewporter(), shell_->surface.get()));
  const bool inFront = layer_ == Layer::bottom;
  shell_->layerSurface.reset(zwlr_layer_shell_v1_get_layer_surface(
      connection.layerShell(), shell_->surface.get(), place.object(),
      inFront ? ZWLR_LAYER_SHELL_V1_LAYER_BOTTOM : ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND, "quilexhelper"));
  zwlr_layer_surface_v1* const layer = shell_->layerSurface.get();
  zwlr_layer_surface_v1_add_listener(layer, &shellListener, this);
  zwlr_layer_surface_v1_set_exclusive_zone(layer, inFront ? kBesidePanels : kWholeOutput);
  setExtent();
  wl_surface_commit(shell_->surface.get());
  shell_->target = services_.makeTarget(shell_->surface.get(), [this] { requestCallback(); });
  connection.flush();
}

void WaylandLayerSurface::hide() {
  if (!shell_) {
    return;
  }
  content_->setTarget(nullptr);
  shell_.reset();
  services_.connection.flush();
}

void WaylandLayerSurface::setInputRegion() {
  const WaylandObject<wl_region> nothing(wl_compositor_create_region(services_.connection.compositor()));
  wl_surface_set_input_region(shell_->surface.get(), fitted_->subject.takesPresses ? nullptr : nothing.get());
}

void WaylandLayerSurface::configure(std::uint32_t serial, std::uint32_t width, std::uint32_t height) {
  zwlr_layer_surface_v1_ack_configure(shell_->layerSurface.get(), serial);
  if (width == 0 || height == 0) {
    return;
  }
  const PixelSize now{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
  // At any scale, one pixel of the picture is one of the display.
  wp_viewport_set_destination(shell_->viewport.get(), now.width, now.height);
  const WaylandObject<wl_region> whole(wl_compositor_create_region(services_.connection.compositor()));
  wl_region_add(whole.get(), 0, 0, now.width, now.height);
  wl_surface_set_opaque_region(shell_->surface.get(), whole.get());
  setInputRegion();
  const bool resized = std::exchange(shell_->size, now) != now;
  if (resized) {
    findPlace();
    makeContent();
  }
  content_->setTarget(shell_->target.get());
  content_->repaint();
  if (resized) {
    changed_();
  }
}

void WaylandLayerSurface::closed() {
  hide();
  reopening_ = services_.runLoop.after(kReopening, [this] {
    reopening_.reset();
    changed_();
  });
}

void WaylandLayerSurface::requestCallback() {
  shell_->frameCallback.reset(wl_surface_frame(shell_->surface.get()));
  wl_callback_add_listener(shell_->frameCallback.get(), &frameListener, this);
  content_->setTarget(nullptr);
  waitNoted_ = false;
  services_.waitBegan();
}

void WaylandLayerSurface::frameDone() {
  shell_->frameCallback.reset();
  content_->setTarget(shell_->target.get());
  content_->catchUp();
  services_.waitEnded();
}

}  // namespace quilex
