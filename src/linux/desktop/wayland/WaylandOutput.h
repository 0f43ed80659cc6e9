#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "linux/desktop/wayland/WaylandObject.h"
#include "linux/render/Renderer.h"
#include "platform/Geometry.h"

namespace quilex {

/// A monitor of the compositor, followed through its changes. Main thread.
class WaylandOutput {
 public:
  /// `theChanged` is called whenever the compositor has described the output anew.
  WaylandOutput(std::uint32_t globalName, wl_output* bound, std::function<void()> theChanged);
  WaylandOutput(const WaylandOutput&) = delete;
  WaylandOutput& operator=(const WaylandOutput&) = delete;

  /// Asks for the output's place; once, as soon as there is someone to tell.
  void locate(zxdg_output_manager_v1* manager);

  /// The global's name in the registry.
  std::uint32_t global() const { return id_; }
  wl_output* object() const { return output_.get(); }
  /// Whether the compositor has described it.
  bool isKnown() const { return known_ && frame().width > 0 && frame().height > 0; }
  /// As the compositor calls it, such as "DP-1".
  const std::string& name() const { return current_.name; }
  /// Place and size in the compositor's global space.
  Rect frame() const;
  /// Pixels of the display for one unit of the global space, in each direction.
  double horizontalScale() const { return static_cast<double>(upright().width) / frame().width; }
  double verticalScale() const { return static_cast<double>(upright().height) / frame().height; }
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
  static const zxdg_output_v1_listener placeListener;

  /// The size of the mode, as a person sees it on a monitor that may be turned.
  PixelSize upright() const;

  std::uint32_t id_;
  WaylandObject<wl_output> output_;
  WaylandObject<zxdg_output_v1> place_;
  std::function<void()> changed_;
  Description pending_;
  Description current_;
  bool known_ = false;
};

}  // namespace quilex
