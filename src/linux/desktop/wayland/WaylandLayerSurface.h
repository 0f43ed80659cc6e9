#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "linux/desktop/wayland/LayerSurfacePosition.h"
#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/render/VideoOutput.h"

namespace quilex {

/// Makes the renderer's target for a surface. `aboutToShow` is called before each commit of a picture.
using MakeWaylandTarget = std::function<std::unique_ptr<RenderTarget>(wl_surface*, std::function<void()> aboutToShow)>;

/// A wallpaper's surface in one layer of the layer shell, on one output: never focused, and on all workspaces. It
/// covers the whole output, or in the bottom layer what panels leave of it. It exists only while it is shown. The
/// compositor paces the frames: after one is shown, none is drawn before the frame callback, which does not come while
/// nobody can see the surface. Main thread.
class WaylandLayerSurface {
 public:
  enum class Layer { background, bottom };
  struct Services {
    WaylandConnection& connection;
    VideoOutput& output;
    MakeWaylandTarget makeTarget;
    RunLoop& runLoop;
    /// Called when a surface begins to wait for a frame callback, and when the callback has come.
    std::function<void()> waitBegan;
    std::function<void()> waitEnded;
  };
  /// What is shown, and who gets the presses on it. View and part are in the coordinates of the screen.
  struct Subject {
    Rect view;
    Rect screen;
    /// What is to be covered: the whole screen, or a strip along one of its edges.
    Rect part;
    bool takesPresses = true;
    bool operator==(const Subject&) const = default;
  };

  /// The services must outlive the surface. `changed` is called when `leftRoom` may have changed, or the surface can be
  /// shown (again); it is to call `update`.
  WaylandLayerSurface(const Services& services, Layer layer, std::function<void()> changed)
      : services_(services), layer_(layer), changed_(std::move(changed)) {}
  ~WaylandLayerSurface();
  WaylandLayerSurface(const WaylandLayerSurface&) = delete;
  WaylandLayerSurface& operator=(const WaylandLayerSurface&) = delete;

  /// Shows or hides the surface, and fits it to its output, which may have changed. Without an output it stays as it
  /// is.
  void update(bool wanted, const WaylandOutput* place, const Subject& subject);

  /// Whether the compositor has given it a place.
  bool isShown() const { return shell_ && shell_->size; }
  /// What panels take of the screen: a strip along an edge, or the whole screen if it is more than that or not known
  /// yet. None without panels.
  std::optional<Rect> leftRoom() const;
  bool waitsForCallback() const { return shell_ && shell_->frameCallback; }
  /// Whether the callback that the surface waits for was already pending when `noteWait` was last called.
  bool isLeftWaiting() const { return waitsForCallback() && waitNoted_; }
  void noteWait() { waitNoted_ = waitsForCallback(); }
  bool is(const wl_surface* other) const { return shell_ && shell_->surface.get() == other; }

 private:
  /// What there is while the surface is shown.
  struct Shell {
    WaylandObject<wl_surface> surface;
    WaylandObject<wp_viewport> viewport;
    WaylandObject<zwlr_layer_surface_v1> layerSurface;
    WaylandObject<wl_callback> frameCallback;
    std::unique_ptr<RenderTarget> target;
    /// In units of the global space; none until the compositor has given it.
    std::optional<PixelSize> size;
    /// What it covers of the screen, once that is known; and the question for it.
    std::optional<Rect> place;
    std::unique_ptr<LayerSurfacePosition> question;
  };
  /// What the content was made for. The output is its global's name.
  struct Fit {
    std::uint32_t output;
    PixelScale scale;
    Subject subject;
    bool operator==(const Fit&) const = default;
  };
  static const zwlr_layer_surface_v1_listener shellListener;
  static const wl_callback_listener frameListener;

  void fit(const Fit& now);
  void makeContent();
  void showContent();
  Rect covered() const;
  void findPlace();
  bool leavesRoom() const;
  void show(const WaylandOutput& place);
  void setExtent();
  void hide();
  void setInputRegion();
  void configure(std::uint32_t serial, std::uint32_t width, std::uint32_t height);
  void closed();
  void requestCallback();
  void frameDone();

  const Services& services_;
  Layer layer_;
  std::function<void()> changed_;
  std::optional<Fit> fitted_;
  std::optional<VideoSurface> content_;
  std::unique_ptr<Shell> shell_;
  bool waitNoted_ = false;
  bool wanted_ = false;
  std::optional<Disposable> reopening_;
};

}  // namespace quilex
