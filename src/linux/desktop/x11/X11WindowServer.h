#pragma once

#include <memory>
#include <vector>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/x11/X11Connection.h"
#include "linux/desktop/x11/X11DesktopWindow.h"
#include "linux/desktop/x11/X11Monitors.h"
#include "linux/render/VideoOutput.h"
#include "platform/RunLoop.h"
#include "platform/WindowServer.h"

namespace quilex {

/// Screens and wallpaper windows on an X server. Screens are the monitors of RandR 1.5; on an older server the whole
/// root window is the one screen.
class X11WindowServer : public WindowServer {
 public:
  /// Everything given must outlive the server.
  X11WindowServer(X11Connection& x11, VideoOutput& videoOutput, Renderer& pictureRenderer, RunLoop& loop);
  ~X11WindowServer() override;

  std::vector<Screen> screens() const override;
  std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) override;
  [[nodiscard]] Disposable observeScreens(std::function<void()> handler) override;
  /// From the visibility that the server tells; under a compositing manager, which redirects windows, it tells none.
  [[nodiscard]] Disposable observeOcclusion(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeActiveSpace(std::function<void()> handler) override;

 private:
  void handle(const xcb_generic_event_t& event);
  void rootPropertyChanged(xcb_atom_t name);
  void ordered();
  bool isCovered() const;
  void checkOcclusion();

  X11Connection& connection;
  VideoOutput& output;
  Renderer& renderer;
  RunLoop& runLoop;
  X11Monitors monitors;
  DesktopWindows<X11DesktopWindow> windows;
  ObserverList<> screenObservers;
  ObserverList<> spaceObservers;
  ObserverList<> occlusionObservers;
  bool covered = false;
  std::optional<Disposable> screensChanged;
  std::optional<Disposable> occlusionCheck;
  /// While what the server tells may come of the agent's own ordering.
  std::optional<Disposable> ownOrdering;
  Disposable events;
};

}  // namespace quilex
