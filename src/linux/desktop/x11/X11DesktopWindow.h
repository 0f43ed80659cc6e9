#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "linux/desktop/DesktopWindows.h"
#include "linux/desktop/x11/X11Connection.h"
#include "linux/render/VideoOutput.h"
#include "platform/VideoView.h"

namespace quilex {

/// A window of the server that lies on the desktop: below all ordinary windows, on every workspace, undecorated, never
/// focused, and at exactly its place whatever a window manager would prefer. Works managed and unmanaged.
class X11DesktopWindow {
 public:
  /// Hidden at first. Everything given must outlive the window.
  X11DesktopWindow(X11Connection& x11, VideoOutput& videoOutput, Renderer& pictureRenderer, const Rect& frame);
  ~X11DesktopWindow();
  X11DesktopWindow(const X11DesktopWindow&) = delete;
  X11DesktopWindow& operator=(const X11DesktopWindow&) = delete;

  const Rect& frame() const { return place; }
  void setContent(std::unique_ptr<VideoView> view, std::function<void()> click);

  /// The window is to be shown (as soon as there is a frame to show) at that end of the desktop windows. Takes effect
  /// with `settle`, as does hiding, so that what is undone in the same turn of the run loop is never seen.
  void order(WindowOrder where);
  void orderOut() { wanted = false; }
  /// Shows, restacks or hides the window as it was asked last.
  void settle();
  bool isMapped() const { return mapped; }
  /// Whether other windows cover all of it.
  bool isObscured() const { return obscured; }
  /// A window manager came or went.
  void reassert();

  void handle(const xcb_generic_event_t& event);

 private:
  void create();
  void describe();
  void show();
  void restack();
  void restackUnmanaged();
  void keepPlace(const xcb_configure_notify_event_t& event);
  void press(const xcb_button_press_event_t& event);
  template <typename Item, std::size_t count>
  void setProperty(Atom name, xcb_atom_t type, const std::array<Item, count>& items);

  X11Connection& connection;
  VideoOutput& output;
  Renderer& renderer;
  Rect place;
  xcb_window_t window = 0;
  std::unique_ptr<VideoView> view;
  std::function<void()> click;
  std::optional<VideoSurface> surface;
  WindowOrder wantedOrder = WindowOrder::back;
  bool wanted = false;
  bool mapped = false;
  bool obscured = false;
  bool misplaced = false;
  bool pressed = false;
  int corrections = 0;
};

}  // namespace quilex
