#pragma once

#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "linux/desktop/x11/X11Connection.h"
#include "platform/Geometry.h"
#include "platform/RunLoop.h"

namespace quilex {

/// What full-screen windows cover, as an EWMH window manager knows it, since under a compositing manager the server
/// takes no window for covered. Without such a manager there is none. Main thread.
class X11Coverage {
 public:
  /// `changed` is called a moment after the windows have changed. Connection and loop must outlive the object.
  X11Coverage(X11Connection& x11, RunLoop& loop, std::function<void()> changed);
  X11Coverage(const X11Coverage&) = delete;
  X11Coverage& operator=(const X11Coverage&) = delete;

  /// Whether a full-screen window hides all of that rectangle of the root window.
  bool covers(const Rect& place) const;

 private:
  void handle(const xcb_generic_event_t& event);
  bool concerns(const xcb_property_notify_event_t& change) const;
  void readSoon();
  void read();
  void follow(const std::vector<xcb_window_t>& clients);
  std::vector<xcb_window_t> fullScreenAmong(const std::vector<xcb_window_t>& clients) const;
  bool isOnActiveWorkspace(xcb_window_t window) const;
  std::optional<Rect> opaquePart(xcb_window_t window) const;

  X11Connection& x11_;
  RunLoop& runLoop_;
  std::function<void()> changed_;
  /// The windows whose events are selected.
  std::set<xcb_window_t> followed_;
  /// Those that are full-screen, wherever they are, and what the visible ones hide.
  std::set<xcb_window_t> fullScreen_;
  std::vector<Rect> hidden_;
  std::optional<Disposable> reading_;
  Disposable events_;
};

}  // namespace quilex
