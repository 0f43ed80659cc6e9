#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/desktop/wayland/WaylandTargets.h"
#include "linux/render/VideoOutput.h"
#include "platform/VideoView.h"

namespace quilex {

/// A surface of the layer shell that covers one output: in the background layer, or in the bottom layer, which lies in
/// front of other programs' backgrounds and desktop icons. Never focused; on all workspaces. It exists only while it is
/// shown, and moves over to another output that takes the place of its own. Frames are paced by the compositor: between
/// a frame and the compositor's word for the next one, and while it gives none because nobody can see the surface,
/// nothing is drawn.
class WaylandDesktopWindow {
 public:
  struct Services {
    WaylandConnection& connection;
    WaylandTargets& targets;
    VideoOutput& output;
    Renderer& renderer;
    RunLoop& runLoop;
    /// Called when a window begins to wait for the compositor's word on a frame, and when that has come.
    std::function<void()> frameAsked;
    std::function<void()> frameCame;
  };

  /// Everything given must outlive the window, but for the output.
  WaylandDesktopWindow(Services givenServices, Screen covered)
      : services_(std::move(givenServices)), screen_(std::move(covered)) {}
  ~WaylandDesktopWindow();
  WaylandDesktopWindow(const WaylandDesktopWindow&) = delete;
  WaylandDesktopWindow& operator=(const WaylandDesktopWindow&) = delete;

  bool covers(const Screen& other) const { return other.name == screen_.name && other.frame == screen_.frame; }
  void setContent(std::unique_ptr<VideoView> newView, std::function<void()> newClick);
  void order(WindowOrder where);
  void orderOut() { wanted_ = false; }
  /// Brings what is shown in line with what is wanted and with what the output has become.
  void settle();

  bool isShown() const { return shell_ && shell_->configured; }
  bool waits() const { return shell_ && shell_->frame; }
  /// Whether the window waits for the compositor's word on a frame that it already waited for when this was last asked.
  bool isLeftWaiting() { return waits() && std::exchange(lookedAt_, true); }

  /// Whether that is the window's surface.
  bool is(const wl_surface* other) const { return shell_ && shell_->surface.get() == other; }
  void button(std::uint32_t code, bool down);

 private:
  /// What there is while the window is shown.
  struct Shell {
    WaylandObject<wl_surface> surface;
    WaylandObject<wp_viewport> viewport;
    WaylandObject<zwlr_layer_surface_v1> layerSurface;
    WaylandObject<wl_callback> frame;
    WindowOrder order = WindowOrder::back;
    bool configured = false;
  };
  static const zwlr_layer_surface_v1_listener shellListener;
  static const wl_callback_listener frameListener;

  /// The output and its scale that the picture was made for.
  struct Fit {
    std::uint32_t output;
    double horizontalScale;
    double verticalScale;
    bool operator==(const Fit&) const = default;
  };

  const WaylandOutput* output() const;
  void fit();
  void show();
  void hide();
  void configure(std::uint32_t serial, std::uint32_t width, std::uint32_t height);
  void closed();
  void requestFrame();
  void frameDone();

  Services services_;
  Screen screen_;
  NativeWindow target_ = services_.targets.number();
  std::unique_ptr<VideoView> view_;
  std::function<void()> click_;
  std::optional<Fit> fitted_;
  std::optional<VideoSurface> content_;
  std::unique_ptr<Shell> shell_;
  WindowOrder wantedOrder_ = WindowOrder::back;
  /// Whether the frame that was asked for last was waited for at a look.
  bool lookedAt_ = false;
  bool wanted_ = false;
  bool pressed_ = false;
  std::optional<Disposable> reopening_;
};

}  // namespace quilex
