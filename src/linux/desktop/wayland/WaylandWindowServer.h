#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/wayland/WaylandConnection.h"
#include "linux/desktop/wayland/WaylandDesktopWindow.h"
#include "linux/desktop/wayland/WaylandPointer.h"
#include "linux/desktop/wayland/WaylandTargets.h"
#include "platform/WindowServer.h"

namespace quilex {

/// Screens and wallpaper windows on a Wayland compositor with a layer shell. The wallpaper counts as covered when the
/// compositor, which asks no frames of what cannot be seen, has asked none of any window for some seconds. On all
/// workspaces as they are, the windows need not know the active one, so that nobody is ever told of that.
class WaylandWindowServer : public WindowServer {
 public:
  /// Everything given must outlive the server.
  WaylandWindowServer(WaylandConnection& theConnection, WaylandTargets& targets, VideoOutput& output,
                      Renderer& renderer, RunLoop& loop);

  std::vector<Screen> screens() const override;
  std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) override;
  [[nodiscard]] Disposable observeScreens(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeOcclusion(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeActiveSpace(std::function<void()> /*handler*/) override {
    return Disposable([] {});
  }

 private:
  void screensChangedSoon();
  void lookSoon(std::chrono::milliseconds delay);
  void checkOcclusion();

  WaylandConnection& connection_;
  WaylandDesktopWindow::Services services_;
  DesktopWindows<WaylandDesktopWindow> windows_;
  WaylandPointer pointer_;
  ObserverList<> screenObservers_;
  std::optional<Disposable> screensChanged_;
  ObserverList<> occlusionObservers_;
  bool covered_ = false;
  std::optional<Disposable> look_;
  Disposable outputs_;
};

}  // namespace quilex
