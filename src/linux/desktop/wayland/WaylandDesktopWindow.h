#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/render/VideoOutput.h"
#include "platform/VideoView.h"

namespace quilex {

/// Makes the renderer's target for a surface. `aboutToShow` is called before each commit of a picture.
using MakeWaylandTarget = std::function<std::unique_ptr<RenderTarget>(wl_surface*, std::function<void()> aboutToShow)>;

/// A window that covers one output: a surface of the layer shell in the background layer, or in the bottom layer, which
/// lies in front of other programs' backgrounds and desktop icons. Never focused; on all workspaces. The surface exists
/// only while the window is shown. When another output takes the place of its own, it moves there. The compositor paces
/// the frames: after one is shown, none is drawn before the frame callback, which does not come while nobody can see
/// the surface.
class WaylandDesktopWindow {
 public:
  struct Services {
    WaylandConnection& connection;
    VideoOutput& output;
    MakeWaylandTarget makeTarget;
    RunLoop& runLoop;
    /// Called when a window begins to wait for a frame callback, and when the callback has come.
    std::function<void()> waitBegan;
    std::function<void()> waitEnded;
  };

  /// The services must outlive the window.
  WaylandDesktopWindow(const Services& services, Screen screen) : services_(services), screen_(std::move(screen)) {}
  ~WaylandDesktopWindow();
  WaylandDesktopWindow(const WaylandDesktopWindow&) = delete;
  WaylandDesktopWindow& operator=(const WaylandDesktopWindow&) = delete;

  bool covers(const Screen& other) const { return other.name == screen_.name && other.frame == screen_.frame; }
  void setContent(std::unique_ptr<VideoView> view, std::function<void()> click);
  void order(WindowOrder where);
  void orderOut() { wanted_ = false; }
  /// Shows, restacks or hides the window as it was asked last, and fits it to its output, which may have changed.
  void settle();

  bool isShown() const { return shell_ && shell_->configured; }
  bool waitsForCallback() const { return shell_ && shell_->frameCallback; }
  /// Whether the callback that the window waits for was already pending when `noteWait` was last called.
  bool isLeftWaiting() const { return waitsForCallback() && waitNoted_; }
  void noteWait() { waitNoted_ = waitsForCallback(); }

  /// Whether `other` is the window's surface.
  bool is(const wl_surface* other) const { return shell_ && shell_->surface.get() == other; }
  void button(std::uint32_t code, bool down);

 private:
  /// What there is while the window is shown.
  struct Shell {
    WaylandObject<wl_surface> surface;
    WaylandObject<wp_viewport> viewport;
    WaylandObject<zwlr_layer_surface_v1> layerSurface;
    WaylandObject<wl_callback> frameCallback;
    std::unique_ptr<RenderTarget> target;
    WindowOrder order = WindowOrder::back;
    bool configured = false;
  };
  static const zwlr_layer_surface_v1_listener shellListener;
  static const wl_callback_listener frameListener;

  /// What the content was made for: the output, by its global's name, and its scale.
  struct Fit {
    std::uint32_t output;
    PixelScale scale;
    bool operator==(const Fit&) const = default;
  };

  const WaylandOutput* output() const;
  void fit();
  void makeContent(PixelScale scale);
  void show();
  void hide();
  void configure(std::uint32_t serial, std::uint32_t width, std::uint32_t height);
  void closed();
  void requestCallback();
  void frameDone();

  const Services& services_;
  Screen screen_;
  std::unique_ptr<VideoView> view_;
  std::function<void()> click_;
  std::optional<Fit> fitted_;
  std::optional<VideoSurface> content_;
  std::unique_ptr<Shell> shell_;
  WindowOrder wantedOrder_ = WindowOrder::back;
  bool waitNoted_ = false;
  bool wanted_ = false;
  bool pressed_ = false;
  std::optional<Disposable> reopening_;
};

}  // namespace quilex
