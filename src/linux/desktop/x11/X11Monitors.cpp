#include "linux/desktop/x11/X11Monitors.h"

#include <cmath>

namespace quilex {

namespace {

std::string atomName(xcb_connection_t* connection, xcb_atom_t atom) {
  const XcbPointer<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
  return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                             static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
               : std::string();
}

}  // namespace

X11Monitors::X11Monitors(const X11Connection& x11) : x11_(x11) {
  const auto* randr = xcb_get_extension_data(x11.xcb(), &xcb_randr_id);
  if (randr != nullptr && randr->present != 0) {
    const XcbPointer<xcb_randr_query_version_reply_t> version(
        xcb_randr_query_version_reply(x11.xcb(), xcb_randr_query_version(x11.xcb(), 1, 5), nullptr));
    hasMonitors_ = version && (version->major_version > 1 || version->minor_version >= 5);
    randrEvent_ = randr->first_event;
  }
}

std::vector<X11Monitors::Monitor> X11Monitors::list() const {
  std::vector<Monitor> found;
  if (hasMonitors_) {
    const auto cookie = xcb_randr_get_monitors(x11_.xcb(), x11_.root(), 1);
    const XcbPointer<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(x11_.xcb(), cookie, nullptr));
    if (!reply) {
      return found;
    }
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get()); monitor.rem > 0;
         xcb_randr_monitor_info_next(&monitor)) {
      const auto& info = *monitor.data;
      if (info.width > 0 && info.height > 0) {
        found.push_back({atomName(x11_.xcb(), info.name),
                         {double(info.x), double(info.y), double(info.width), double(info.height)},
                         info.nOutput > 0 ? *xcb_randr_monitor_info_outputs(&info) : xcb_randr_output_t{XCB_NONE}});
      }
    }
  } else {
    const XcbPointer<xcb_get_geometry_reply_t> root(
        xcb_get_geometry_reply(x11_.xcb(), xcb_get_geometry(x11_.xcb(), x11_.root()), nullptr));
    if (root) {
      found.push_back({"root", {0, 0, double(root->width), double(root->height)}});
    }
  }
  return found;
}

std::vector<DisplayStatus> X11Monitors::describe() const {
  std::vector<DisplayStatus> found;
  for (const Monitor& monitor : list()) {
    found.push_back({monitor.name, monitor.place, 1, monitor.output != XCB_NONE ? refreshRate(monitor.output) : 0});
  }
  return found;
}

// The rate of the mode that the output's controller runs, by RandR's description of modes: the dots of a second divided
// by the dots of a whole picture. An interlaced mode draws half of a picture at a time.
double X11Monitors::refreshRate(xcb_randr_output_t output) const {
  xcb_connection_t* const xcb = x11_.xcb();
  const XcbPointer<xcb_randr_get_screen_resources_current_reply_t> resources(
      xcb_randr_get_screen_resources_current_reply(xcb, xcb_randr_get_screen_resources_current(xcb, x11_.root()),
                                                   nullptr));
  const XcbPointer<xcb_randr_get_output_info_reply_t> info(xcb_randr_get_output_info_reply(
      xcb, xcb_randr_get_output_info(xcb, output, resources ? resources->config_timestamp : XCB_CURRENT_TIME),
      nullptr));
  if (!resources || !info || info->crtc == XCB_NONE) {
    return 0;
  }
  const XcbPointer<xcb_randr_get_crtc_info_reply_t> controller(xcb_randr_get_crtc_info_reply(
      xcb, xcb_randr_get_crtc_info(xcb, info->crtc, resources->config_timestamp), nullptr));
  for (auto modes = xcb_randr_get_screen_resources_current_modes_iterator(resources.get()); modes.rem > 0;
       xcb_randr_mode_info_next(&modes)) {
    const xcb_randr_mode_info_t& mode = *modes.data;
    const double dots = double(mode.htotal) * mode.vtotal;
    if (controller && mode.id == controller->mode && dots > 0) {
      const bool isInterlaced = (mode.mode_flags & XCB_RANDR_MODE_FLAG_INTERLACE) != 0;
      return std::round(1000.0 * mode.dot_clock / dots * (isInterlaced ? 2 : 1)) / 1000;
    }
  }
  return 0;
}

}  // namespace quilex
