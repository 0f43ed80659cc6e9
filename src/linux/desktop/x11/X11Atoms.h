#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <vector>

namespace quilex {

enum class Atom {
  gtkFrameExtents,
  manager,
  motifWmHints,
  netClientList,
  netClientListStacking,
  netCurrentDesktop,
  netRestackWindow,
  netSupported,
  netSupportingWmCheck,
  netSystemTray,
  netWmDesktop,
  netWmName,
  netWmOpaqueRegion,
  netWmPid,
  netWmState,
  netWmStateBelow,
  netWmStateFullscreen,
  netWmStateHidden,
  netWmStateMaximizedHorizontally,
  netWmStateMaximizedVertically,
  netWmStateSkipPager,
  netWmStateSkipTaskbar,
  netWmStateSticky,
  netWmWindowOpacity,
  netWmWindowType,
  netWmWindowTypeDesktop,
  utf8String,
  xRootPixmap,
  count
};

/// The workspace of a window that is on all of them, in _NET_WM_DESKTOP.
constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;

/// The atoms that the agent uses, as one connection knows them.
class X11Atoms {
 public:
  /// None before they are interned.
  X11Atoms() = default;
  /// Blocks until the server has answered.
  explicit X11Atoms(xcb_connection_t* connection);

  xcb_atom_t operator[](Atom name) const { return atoms_[static_cast<std::size_t>(name)]; }

 private:
  std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> atoms_{};
};

/// The first 32-bit items of a window's property; empty when it has none of that type. Blocks until the server has
/// answered.
std::vector<std::uint32_t> xcbProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name,
                                       xcb_atom_t type);

/// A window's children from the lowest to the topmost; empty when it is gone. Blocks until the server has answered.
std::vector<xcb_window_t> xcbChildren(xcb_connection_t* connection, xcb_window_t window);

}  // namespace quilex
