#pragma once

#include <xcb/randr.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/desktop/x11/X11Connection.h"
#include "platform/AgentStatus.h"

namespace quilex {

/// The X server's monitors, by RandR 1.5; on an older server the whole root window is the one monitor. Each function
/// that asks for them blocks until the server has answered.
class X11Monitors {
 public:
  struct Monitor {
    std::string name;
    Rect place;
    /// The first of its outputs, if it has any.
    xcb_randr_output_t output = XCB_NONE;
  };

  /// `x11` must outlive the object.
  explicit X11Monitors(const X11Connection& x11);

  /// The number of RandR's first event; none where the server has no RandR.
  std::optional<std::uint8_t> firstEvent() const { return randrEvent_; }
  /// The monitors that are on.
  std::vector<Monitor> list() const;
  /// The same monitors for the status report. The scale is always 1 on X11.
  std::vector<DisplayStatus> describe() const;

 private:
  double refreshRate(xcb_randr_output_t output) const;

  const X11Connection& x11_;
  std::optional<std::uint8_t> randrEvent_;
  bool hasMonitors_ = false;
};

}  // namespace quilex
