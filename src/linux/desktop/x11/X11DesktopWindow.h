#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/x11/IconLayer.h"
#include "linux/desktop/x11/X11Connection.h"
#include "linux/render/VideoOutput.h"
#include "platform/VideoView.h"

namespace quilex {

/// Makes the renderer's target for a window.
using MakeX11Target = std::function<std::unique_ptr<RenderTarget>(xcb_window_t)>;

/// A window that lies on the desktop: below all ordinary windows, on every workspace, undecorated, never focused. It
/// stays at exactly its place, wherever a window manager moves it. Works with and without a window manager. Pointers
/// act on what lies below it, as if it were not there; its presses come from the window server. Where icons stand on a
/// background of their own, it lies over them and leaves out their pixels.
class X11DesktopWindow {
 public:
  /// Hidden at first. `place` is on the root window. The connection and the output must outlive the window.
  X11DesktopWindow(X11Connection& x11, VideoOutput& output, const MakeX11Target& makeTarget, const Rect& place);
  X11DesktopWindow(const X11DesktopWindow&) = delete;
  X11DesktopWindow& operator=(const X11DesktopWindow&) = delete;

  bool covers(const Screen& screen) const { return screen.frame == screen_; }
  /// On the root window.
  const Rect& place() const { return screen_; }
  void setContent(std::unique_ptr<VideoView> view, std::function<void()> click);

  /// The window is to be shown, as soon as there is a frame to show, behind or in front of all other desktop windows.
  void order(WindowOrder where);
  void orderOut() { wanted_ = false; }
  /// Shows, restacks or hides the window as the last of those calls asked.
  void settle();
  bool isMapped() const { return mapped_; }
  /// Whether other windows cover all of it.
  bool isObscured() const { return obscured_ || covered_; }
  /// To be called when a full-screen window begins or ceases to hide it. Under a compositing manager the server does
  /// not notice that.
  void setCovered(bool isCovered);
  /// Puts the window into its place in the order again.
  void reassert();
  /// Does that for window managers that keep the order in which windows were mapped.
  void remap();
  /// To be called when the desktop's icons change.
  void setIcons(const IconLayer& icons);
  /// Whether it was ordered to the front, so that it hides icons.
  bool hidesIcons() const { return wanted_ && wantedOrder_ == WindowOrder::front; }
  /// Whether it belongs above windows with icons; else below.
  bool belongsAboveIcons() const {
    return wantedOrder_ == WindowOrder::front || icons_.kind == IconLayer::Kind::separable;
  }

  void handle(const xcb_generic_event_t& event);
  /// The primary button went down in the window, or went up anywhere.
  void press();
  void release();
  bool contains(int x, int y) const;

 private:
  void create();
  void describe();
  void show();
  void withdraw();
  void restack();
  void restackUnmanaged();
  xcb_window_t topmostForeignDesktop() const;
  /// Has frames drawn only while they can be seen.
  void updateTarget();
  void exposed(const xcb_expose_event_t& event);
  void visibilityChanged(const xcb_visibility_notify_event_t& event);
  void keepPlace(const xcb_configure_notify_event_t& event);
  void shape();
  void reparented(const xcb_reparent_notify_event_t& event);
  template <typename Item, std::size_t count>
  void setProperty(Atom name, xcb_atom_t type, const std::array<Item, count>& items);
  template <std::size_t count>
  void configure(std::uint16_t fields, const std::array<std::uint32_t, count>& values);

  X11Connection& x11_;
  VideoOutput& output_;
  Rect screen_;
  PixelRect place_;
  XcbWindow window_;
  /// The window manager's window around it; none without one.
  xcb_window_t frame_ = XCB_NONE;
  std::unique_ptr<RenderTarget> target_;
  std::unique_ptr<VideoView> view_;
  std::function<void()> click_;
  std::optional<VideoSurface> content_;
  WindowOrder wantedOrder_ = WindowOrder::back;
  bool wanted_ = false;
  bool mapped_ = false;
  bool obscured_ = false;
  bool covered_ = false;
  bool misplaced_ = false;
  bool pressed_ = false;
  int corrections_ = 0;
  IconLayer icons_;
};

}  // namespace quilex
