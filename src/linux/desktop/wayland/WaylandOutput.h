#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "linux/desktop/wayland/WaylandObject.h"
#include "linux/render/Pixels.h"
#include "platform/Geometry.h"

namespace quilex {

/// An output of the compositor, kept up to date. Main thread.
class WaylandOutput {
 public:
  /// `global` is its name in the registry. `changed` is called each time the compositor has described the output.
  WaylandOutput(std::uint32_t global, WaylandObject<wl_output> output, std::function<void()> changed);
  WaylandOutput(const WaylandOutput&) = delete;
  WaylandOutput& operator=(const WaylandOutput&) = delete;

  /// Asks for the output's place, once there is a manager to ask.
  void locate(zxdg_output_manager_v1* manager);

  std::uint32_t global() const { return id_; }
  wl_output* object() const { return output_.get(); }
  /// Whether the compositor has described it.
  bool isKnown() const { return known_ && place().width > 0 && place().height > 0; }
  /// As the compositor calls it, such as "DP-1".
  const std::string& name() const { return current_.name; }
  /// Place and size in the compositor's global space.
  Rect place() const;
  PixelScale scale() const;
  /// Hz; 0 when it is not known.
  double refreshRate() const { return current_.refreshRate; }

 private:
  struct Description {
    std::string name;
    PixelRect logical;
    PixelSize mode;
    double refreshRate = 0;
    std::int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;
    std::int32_t scale = 1;
    int x = 0;
    int y = 0;
  };
  static const wl_output_listener outputListener;
  static const zxdg_output_v1_listener xdgOutputListener;

  /// The size of the mode on the monitor, which may be turned, as the user sees it.
  PixelSize upright() const;

  std::uint32_t id_;
  WaylandObject<wl_output> output_;
  WaylandObject<zxdg_output_v1> xdgOutput_;
  std::function<void()> changed_;
  Description pending_;
  Description current_;
  bool known_ = false;
};

}  // namespace quilex
