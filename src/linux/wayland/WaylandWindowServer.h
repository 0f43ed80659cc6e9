#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "linux/render/DesktopWindows.h"
#include "linux/wayland/WaylandConnection.h"
#include "linux/wayland/WaylandDesktopWindow.h"
#include "linux/wayland/WaylandPointer.h"
#include "linux/wayland/WaylandTargets.h"
#include "platform/WindowServer.h"

namespace quilex {

/// Screens and wallpaper windows on a Wayland compositor with a layer shell. The compositor tells neither which
/// workspace is active nor whether other windows cover the wallpaper, so that nobody is ever told.
class WaylandWindowServer : public WindowServer {
 public:
  /// Everything given must outlive the server.
  WaylandWindowServer(WaylandConnection& theConnection, WaylandTargets& targets, VideoOutput& output,
                      Renderer& renderer, RunLoop& loop);

  std::vector<Screen> screens() const override;
  std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) override;
  [[nodiscard]] Disposable observeScreens(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeOcclusion(std::function<void()> /*handler*/) override {
    return Disposable([] {});
  }
  [[nodiscard]] Disposable observeActiveSpace(std::function<void()> /*handler*/) override {
    return Disposable([] {});
  }

 private:
  void screensChangedSoon();

  WaylandConnection& connection;
  WaylandDesktopWindow::Services services;
  DesktopWindows<WaylandDesktopWindow> windows;
  WaylandPointer pointer;
  ObserverList<> screenObservers;
  std::optional<Disposable> screensChanged;
  Disposable outputs;
};

}  // namespace quilex
