#pragma once

#include <xcb/xcb.h>

#include <QSocketNotifier>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include "base/ObserverList.h"

// Xlib's own header defines macros that stand in the way of ordinary names.
struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's own

namespace quilex {

using XlibDisplay = ::_XDisplay;

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

/// Owns a reply, an error or an event of xcb.
template <typename Type>
using XcbPointer = std::unique_ptr<Type, FreeDeleter>;

enum class Atom {
  manager,
  motifWmHints,
  netCurrentDesktop,
  netSupportingWmCheck,
  netSystemTray,
  netWmDesktop,
  netWmName,
  netWmPid,
  netWmState,
  netWmStateBelow,
  netWmStateSkipPager,
  netWmStateSkipTaskbar,
  netWmStateSticky,
  netWmWindowType,
  netWmWindowTypeDesktop,
  utf8String,
  count
};

/// The connection to the X server. Events are read on the run loop and told to all observers, among them the root
/// window's: changes of its properties and structure, and announcements of managers. Main thread.
class X11Connection {
 public:
  /// Connects to $DISPLAY; empty when there is no server, or it has no 24-bit colour. Needs a QCoreApplication for
  /// events to arrive.
  static std::unique_ptr<X11Connection> open();
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  /// Starts reading events; `lost` is called once when the server goes away.
  void start(std::function<void()> lost);

  XlibDisplay* display() const { return xlibDisplay.get(); }
  xcb_connection_t* xcb() const { return connection; }
  xcb_window_t root() const { return defaultScreen->root; }
  /// Bits of a pixel that count.
  static constexpr std::uint8_t kDepth = 24;
  /// A TrueColor visual of that depth with bytes blue, green, red, unused; and a colour map for it.
  xcb_visualid_t visual() const { return trueColor; }
  xcb_colormap_t colormap() const { return map; }
  xcb_atom_t atom(Atom name) const { return atoms[static_cast<std::size_t>(name)]; }

  /// The first 32-bit items of a window's property; empty when it has none of that type.
  std::vector<std::uint32_t> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) const;
  /// Whether an EWMH window manager runs (its own child window confirms the root's claim).
  bool hasWindowManager() const;

  [[nodiscard]] Disposable observeEvents(std::function<void(const xcb_generic_event_t&)> handler);

 private:
  struct DisplayCloser {
    void operator()(XlibDisplay* display) const;
  };

  X11Connection(XlibDisplay* display, int screenNumber);
  bool findVisual();
  void internAtoms();
  void selectRootEvents();
  void drainEvents();

  std::unique_ptr<XlibDisplay, DisplayCloser> xlibDisplay;
  xcb_connection_t* connection;
  xcb_screen_t* defaultScreen = nullptr;
  xcb_visualid_t trueColor = 0;
  xcb_colormap_t map = 0;
  std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> atoms{};
  ObserverList<const xcb_generic_event_t&> observers;
  std::function<void()> serverLost;
  std::unique_ptr<QSocketNotifier> notifier;
};

/// The type of an event without the mark of events that another client sent.
inline std::uint8_t eventType(const xcb_generic_event_t& event) {
  return event.response_type & 0x7F;
}
inline bool wasSentByClient(const xcb_generic_event_t& event) {
  return (event.response_type & 0x80) != 0;
}

}  // namespace quilex
