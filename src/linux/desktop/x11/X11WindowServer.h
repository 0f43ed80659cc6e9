#pragma once

#include <memory>
#include <vector>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/x11/X11Connection.h"
#include "linux/desktop/x11/X11Coverage.h"
#include "linux/desktop/x11/X11DesktopWatcher.h"
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
  /// Everything given must outlive the server. `placed` is called when the windows' placement on the desktop changes.
  X11WindowServer(X11Connection& x11, VideoOutput& output, MakeX11Target makeTarget, RunLoop& loop,
                  std::function<void(const Placement&)> placed);
  ~X11WindowServer() override;

  std::vector<Screen> screens() const override;
  std::unique_ptr<WallpaperWindow> makeWallpaperWindow(const Screen& screen) override;
  [[nodiscard]] Disposable observeScreens(std::function<void()> handler) override;
  /// By the visibility events of the server. There are none under a compositing manager, which redirects windows; there
  /// full-screen windows cover, as the window manager knows them.
  [[nodiscard]] Disposable observeOcclusion(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeUnseen(std::function<void(bool)> handler) override;
  [[nodiscard]] Disposable observeActiveSpace(std::function<void()> handler) override;

 private:
  void handle(const xcb_generic_event_t& event);
  void rootPropertyChanged(xcb_atom_t name);
  void ordered();
  bool isCovered() const;
  void coverageChanged();
  void coverMayHaveChanged();
  void checkOcclusion();
  void iconsChanged();
  void reportPlacement();
  void pressed(const DesktopPress& press);
  /// Puts the windows above or below those with icons, again if a window manager has not done so.
  void arrange();
  bool isMisordered() const;
  void updateUnseen();

  X11Connection& x11_;
  VideoOutput& output_;
  MakeX11Target makeTarget_;
  RunLoop& runLoop_;
  X11Monitors monitors_;
  X11Coverage coverage_;
  DesktopWindows<X11DesktopWindow> windows_;
  ObserverList<> screenObservers_;
  ObserverList<> spaceObservers_;
  ObserverList<> occlusionObservers_;
  ObserverList<bool> unseenObservers_;
  bool unseen_ = false;
  bool covered_ = false;
  std::optional<Disposable> screensChanged_;
  std::optional<Disposable> occlusionCheck_;
  /// Set while changes of visibility may be due to the agent's own ordering.
  std::optional<Disposable> ownOrdering_;
  std::function<void(const Placement&)> placed_;
  Placement placement_;
  int attempts_ = 0;
  std::optional<Disposable> arrangement_;
  Disposable events_;
  X11DesktopWatcher watcher_;
};

}  // namespace quilex
