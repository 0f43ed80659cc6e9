#pragma once

#include <QSocketNotifier>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/ObserverList.h"
#include "base/Result.h"
#include "linux/desktop/x11/X11Atoms.h"
#include "linux/desktop/x11/XcbHandles.h"

// Xlib's own header defines macros that clash with ordinary names.
struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's own

namespace quilex {

struct XlibCloser {
  void operator()(::_XDisplay* display) const;
};
using XlibDisplay = std::unique_ptr<::_XDisplay, XlibCloser>;

/// The connection to the X server. Its events are read on the run loop and passed to all observers. Events of the root
/// window are among them: changes of its properties and its structure, and announcements of managers. Main thread.
class X11Connection {
 public:
  /// Connects to $DISPLAY; fails when there is no server, or it has no 24-bit colour. Needs a QCoreApplication for
  /// events to arrive.
  static Result<std::unique_ptr<X11Connection>> open();
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  /// Starts reading events; `lost` is called once when the server goes away.
  void start(std::function<void()> lost);

  ::_XDisplay* xlib() const { return display_.get(); }
  xcb_connection_t* xcb() const { return connection_; }
  xcb_window_t root() const { return screen_->root; }
  /// The bits of a pixel that count.
  static constexpr std::uint8_t kDepth = 24;
  /// A TrueColor visual of that depth with bytes blue, green, red, unused; and a colour map for it.
  xcb_visualid_t visual() const { return visual_; }
  xcb_colormap_t colormap() const { return ownColormap_ ? ownColormap_.id() : screen_->default_colormap; }
  xcb_atom_t atom(Atom name) const { return atoms_[name]; }

  /// The first 32-bit items of a window's property; empty when it has none of that type.
  std::vector<std::uint32_t> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) const {
    return xcbProperty(connection_, window, name, type);
  }
  /// Whether an EWMH window manager runs (its own child window confirms the root's claim).
  bool hasWindowManager() const;
  /// Whether the window manager understands that hint.
  bool supports(Atom hint) const;

  /// Whether windows can have regions (XFixes 2.0).
  bool hasRegions() const { return hasRegions_; }

  [[nodiscard]] Disposable observeEvents(std::function<void(const xcb_generic_event_t&)> handler);

 private:
  explicit X11Connection(XlibDisplay display);
  bool findVisual();
  void findRegions();
  void selectRootEvents();
  void drainEvents();

  XlibDisplay display_;
  /// Owned by Xlib.
  xcb_connection_t* connection_;
  xcb_screen_t* screen_ = nullptr;
  xcb_visualid_t visual_ = 0;
  /// None where the screen's default colour map serves.
  XcbColormap ownColormap_;
  X11Atoms atoms_;
  bool hasRegions_ = false;
  ObserverList<const xcb_generic_event_t&> observers_;
  std::function<void()> serverLost_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quilex
