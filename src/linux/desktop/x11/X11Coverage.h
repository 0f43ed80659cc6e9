#pragma once

#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "linux/desktop/WindowExtent.h"
#include "linux/desktop/x11/X11Connection.h"
#include "platform/Geometry.h"
#include "platform/RunLoop.h"
#include "platform/StandstillReason.h"

namespace quilex {

/// The large windows of other programs, as an EWMH window manager knows them: what they cover, since under a
/// compositing manager the server takes no window for covered. Without a window manager there are none. Main thread.
class X11Coverage {
 public:
  /// `changed` is called a moment after the windows have changed. Connection and loop must outlive the object.
  X11Coverage(X11Connection& x11, RunLoop& loop, std::function<void()> changed);
  X11Coverage(const X11Coverage&) = delete;
  X11Coverage& operator=(const X11Coverage&) = delete;

  /// Whether a full-screen window hides all of that rectangle of the root window.
  bool covers(const Rect& place) const;
  /// Whether there is a window of that extent on the active workspace.
  bool has(WindowExtent extent) const;

 private:
  struct Large {
    xcb_window_t window;
    WindowExtent extent;
  };
  /// What the answers are made of.
  struct Seen {
    bool isAnyFullScreen = false;
    bool isAnyMaximized = false;
    /// What full-screen windows hide.
    std::vector<Rect> hidden;
    bool operator==(const Seen&) const = default;
  };

  void handle(const xcb_generic_event_t& event);
  bool concerns(const xcb_property_notify_event_t& change) const;
  void readSoon();
  void read();
  void follow(const std::vector<xcb_window_t>& clients);
  std::vector<Large> largeAmong(const std::vector<xcb_window_t>& clients) const;
  std::optional<WindowExtent> extentOf(const std::vector<xcb_atom_t>& states) const;
  bool isSeen(xcb_window_t window) const;
  std::optional<Rect> opaquePart(xcb_window_t window) const;

  X11Connection& x11_;
  RunLoop& runLoop_;
  std::function<void()> changed_;
  /// The windows whose events are selected.
  std::set<xcb_window_t> followed_;
  /// Those that are large, on any workspace.
  std::set<xcb_window_t> large_;
  Seen seen_;
  std::optional<Disposable> reading_;
  Disposable events_;
};

/// Notifies as Desktop::watchWindows does.
[[nodiscard]] Disposable watchX11Windows(X11Connection& x11, WindowExtent extent, RunLoop& loop,
                                         StandstillReason::Handler handler);

}  // namespace quilex
