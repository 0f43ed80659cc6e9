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
      : services(std::move(givenServices)), screen(std::move(covered)) {}
  ~WaylandDesktopWindow();
  WaylandDesktopWindow(const WaylandDesktopWindow&) = delete;
  WaylandDesktopWindow& operator=(const WaylandDesktopWindow&) = delete;

  bool covers(const Screen& other) const { return other.name == screen.name && other.frame == screen.frame; }
  void setContent(std::unique_ptr<VideoView> newView, std::function<void()> newClick);
  void order(WindowOrder where);
  void orderOut() { wanted = false; }
  /// Brings what is shown in line with what is wanted and with what the output has become.
  void settle();

  bool isShown() const { return shell && shell->configured; }
  bool waits() const { return shell && shell->frame; }
  /// Whether the window waits for the compositor's word on a frame that it already waited for when this was last asked.
  bool isLeftWaiting() { return waits() && std::exchange(lookedAt, true); }

  /// Whether that is the window's surface.
  bool is(const wl_surface* other) const { return shell && shell->surface.get() == other; }
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

  Services services;
  Screen screen;
  NativeWindow target = services.targets.number();
  std::unique_ptr<VideoView> view;
  std::function<void()> click;
  std::optional<Fit> fitted;
  std::optional<VideoSurface> content;
  std::unique_ptr<Shell> shell;
  WindowOrder wantedOrder = WindowOrder::back;
  /// Whether the frame that was asked for last was waited for at a look.
  bool lookedAt = false;
  bool wanted = false;
  bool pressed = false;
  std::optional<Disposable> reopening;
};

}  // namespace quilex
