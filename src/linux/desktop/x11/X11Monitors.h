#pragma once

#include <xcb/randr.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/desktop/x11/X11Connection.h"
#include "platform/AgentStatus.h"

namespace quilex {

/// The X server's monitors, by RandR 1.5; on an older server the whole root window is the one monitor. Asking blocks
/// until the server has answered.
class X11Monitors {
 public:
  struct Monitor {
    std::string name;
    Rect frame;
    /// The first of the outputs that it is made of, if there is any.
    xcb_randr_output_t output = XCB_NONE;
  };

  /// `x11` must outlive the object.
  explicit X11Monitors(const X11Connection& x11);

  /// The number of RandR's first event; nothing where the server has no RandR.
  std::optional<std::uint8_t> firstEvent() const { return randrEvent; }
  /// Those that are on.
  std::vector<Monitor> list() const;
  /// The same, with what else is known of each. Nothing is scaled on X11.
  std::vector<DisplayStatus> describe() const;

 private:
  double refreshRate(xcb_randr_output_t output) const;

  const X11Connection& connection;
  std::optional<std::uint8_t> randrEvent;
  bool hasMonitors = false;
};

}  // namespace quilex
