#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "linux/desktop/x11/IconLayer.h"
#include "linux/desktop/x11/IconWindow.h"
#include "linux/desktop/x11/X11Atoms.h"
#include "linux/desktop/x11/XcbHandles.h"

namespace quilex {

struct XcbDisconnector {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// A primary button that went down or up. The place is on the root window.
struct DesktopPress {
  int x = 0;
  int y = 0;
  bool isDown = false;
};

/// Follows the windows of the desktop over a connection of its own to the server at DISPLAY. Everything here may block
/// until the server has answered, so it needs a thread of its own.
class IconReader {
 public:
  /// `seen` is called when the layer of icons has changed, `pressed` when a primary button went down over one of this
  /// process's desktop windows, and when one went up anywhere.
  IconReader(std::function<void(const IconLayer&)> seen, std::function<void(const DesktopPress&)> pressed);
  ~IconReader();
  IconReader(const IconReader&) = delete;
  IconReader& operator=(const IconReader&) = delete;

  /// False if the server, or an extension that is needed here, is missing.
  bool isConnected() const { return root_ != XCB_NONE; }
  int connection() const { return xcb_get_file_descriptor(connection_.get()); }
  /// Handles what the server has sent, and looks at windows when it is time. False when the server is gone.
  bool advance();
  /// In milliseconds, how long nothing needs to be done if the server sends nothing; -1 for any time.
  int patience() const;

 private:
  using Clock = std::chrono::steady_clock;

  bool hasExtensions();
  void handle(const xcb_generic_event_t& event);
  void buttonEvent(const xcb_ge_generic_event_t& event);
  void lookIn(std::chrono::milliseconds delay);
  void lookAtAllAgain();
  void look();
  void findWindows();
  void order(IconLayer& layer) const;
  xcb_window_t toplevelOf(xcb_window_t window) const;
  bool isDesktop(xcb_window_t window, bool own) const;
  bool isWallpaperAt(int x, int y) const;
  bool isIconAt(int x, int y) const;
  xcb_window_t topmostAt(int x, int y) const;

  const std::function<void(const IconLayer&)> seen_;
  const std::function<void(const DesktopPress&)> pressed_;
  const std::unique_ptr<xcb_connection_t, XcbDisconnector> connection_;
  X11Atoms atoms_;
  xcb_window_t root_ = XCB_NONE;
  std::uint8_t firstDamageEvent_ = 0;
  std::uint8_t inputOpcode_ = 0;
  /// Whether the window manager's list of windows must be read again.
  bool isListStale_ = true;
  std::vector<std::unique_ptr<IconWindow>> windows_;
  /// This process's own.
  std::vector<xcb_window_t> wallpapers_;
  IconLayer layer_;
  std::optional<Clock::time_point> nextLook_;
  /// How many of the looks at all windows that follow a change have been made.
  std::size_t wholeLooks_ = 0;
};

}  // namespace quilex
