#include "linux/desktop/wayland/WaylandDesktopWindow.h"

#include <linux/input-event-codes.h>

namespace quilex {

WaylandDesktopWindow::WaylandDesktopWindow(const WaylandLayerSurface::Services& services, const LayerChoice& choice,
                                           Screen screen)
    : connection_(services.connection),
      choice_(choice),
      screen_(std::move(screen)),
      bottom_(services, WaylandLayerSurface::Layer::bottom, [this] { settle(); }),
      background_(services, WaylandLayerSurface::Layer::background, [this] { settle(); }) {}

void WaylandDesktopWindow::setContent(std::unique_ptr<VideoView> view, std::function<void()> click) {
  view_ = std::move(view);
  click_ = std::move(click);
}

// A hidden window stays as it is when outputs change. When it is shown again, it is on the output where it was.
const WaylandOutput* WaylandDesktopWindow::output() const {
  const WaylandOutput* const exact = connection_.outputOf(screen_);
  return exact != nullptr || isShown() ? exact : connection_.outputNamed(screen_.name);
}

void WaylandDesktopWindow::order(WindowOrder where) {
  wanted_ = true;
  wantedOrder_ = where;
}

void WaylandDesktopWindow::settle() {
  if (!view_) {
    return;
  }
  const WaylandOutput* const place = output();
  const Rect whole{0, 0, screen_.frame.width, screen_.frame.height};
  WaylandLayerSurface::Subject subject{view_->frame, screen_.frame, whole, choice_.takesPresses()};
  bottom_.update(wanted_ && choice_.standsInFront(wantedOrder_), place, subject);
  const std::optional<Rect> beside = bottom_.leftRoom();
  const bool staysBehind = choice_.staysInBackground();
  subject.part = staysBehind ? whole : beside.value_or(whole);
  background_.update(wanted_ && (staysBehind || beside), place, subject);
}

bool WaylandDesktopWindow::isLeftWaiting() const {
  const auto isLeft = [](const WaylandLayerSurface& surface) { return !surface.isShown() || surface.isLeftWaiting(); };
  return isShown() && isLeft(bottom_) && isLeft(background_);
}

void WaylandDesktopWindow::noteWait() {
  bottom_.noteWait();
  background_.noteWait();
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
