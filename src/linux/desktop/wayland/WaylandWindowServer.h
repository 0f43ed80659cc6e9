#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/desktop/wayland/WaylandDesktopWindow.h"
#include "linux/desktop/wayland/WaylandPointer.h"
#include "platform/WindowServer.h"

namespace quilex {

/// Screens and wallpaper windows on a Wayland compositor with a layer shell. The wallpaper counts as covered when no
/// window has had a frame callback for some seconds: a compositor sends none for a surface that cannot be seen. Changes
/// of the active workspace are never notified; the windows are on all workspaces.
class WaylandWindowServer : public WindowServer {
 public:
  /// Everything given must outlive the server. `ordered` is called with the windows' order after each turn in which
  /// that may have changed.
  WaylandWindowServer(WaylandConnection& connection, const LayerChoice& choice, VideoOutput& output,
                      MakeWaylandTarget makeTarget, RunLoop& loop, std::function<void(WindowOrder)> ordered);

  std::vector<Screen> screens() const override;
  std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) override;
  [[nodiscard]] Disposable observeScreens(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeOcclusion(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeUnseen(std::function<void(bool)> handler) override;
  [[nodiscard]] Disposable observeActiveSpace(std::function<void()> /*handler*/) override {
    return Disposable([] {});
  }

 private:
  void screensChangedSoon();
  void checkOcclusionIn(std::chrono::milliseconds delay);
  void checkOcclusion();
  void settled();
  void updateUnseen();

  WaylandConnection& connection_;
  const LayerChoice& choice_;
  WaylandLayerSurface::Services services_;
  std::function<void(WindowOrder)> ordered_;
  DesktopWindows<WaylandDesktopWindow> windows_;
  WaylandPointer pointer_;
  ObserverList<> screenObservers_;
  std::optional<Disposable> screensChanged_;
  ObserverList<> occlusionObservers_;
  bool covered_ = false;
  ObserverList<bool> unseenObservers_;
  bool unseen_ = false;
  std::optional<Disposable> occlusionCheck_;
  Disposable outputs_;
};

}  // namespace quilex
