#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/wayland/LayerChoice.h"
#include "linux/desktop/wayland/WaylandLayerSurface.h"
#include "platform/VideoView.h"

namespace quilex {

/// A window that covers one output, with a surface in each layer that the choice of layers asks for. No surface is
/// moved to another layer, which some compositors ignore. When another output takes the place of its own, the window
/// moves there.
class WaylandDesktopWindow {
 public:
  /// What it is given must outlive the window.
  WaylandDesktopWindow(const WaylandLayerSurface::Services& services, const LayerChoice& choice, Screen screen);
  WaylandDesktopWindow(const WaylandDesktopWindow&) = delete;
  WaylandDesktopWindow& operator=(const WaylandDesktopWindow&) = delete;

  const Screen& screen() const { return screen_; }
  /// To where its output is now.
  void moveTo(Screen screen) { screen_ = std::move(screen); }
  void setContent(std::unique_ptr<VideoView> view, std::function<void()> click);
  void order(WindowOrder where);
  WindowOrder ordered() const { return wantedOrder_; }
  void orderOut() { wanted_ = false; }
  /// Shows, restacks or hides the window as it was asked last, and fits it to its output, which may have changed.
  void settle();

  bool isShown() const { return bottom_.isShown() || background_.isShown(); }
  bool waitsForCallback() const { return bottom_.waitsForCallback() || background_.waitsForCallback(); }
  /// Whether all its surfaces are left waiting.
  bool isLeftWaiting() const;
  void noteWait();

  /// Whether `other` is a surface of the window.
  bool is(const wl_surface* other) const { return bottom_.is(other) || background_.is(other); }
  void button(std::uint32_t code, bool down);

 private:
  const WaylandOutput* output() const;

  const WaylandConnection& connection_;
  const LayerChoice& choice_;
  Screen screen_;
  std::unique_ptr<VideoView> view_;
  std::function<void()> click_;
  WaylandLayerSurface bottom_;
  WaylandLayerSurface background_;
  WindowOrder wantedOrder_ = WindowOrder::back;
  bool wanted_ = false;
  bool pressed_ = false;
};

}  // namespace quilex
