#include "linux/desktop/x11/X11Atoms.h"

#include <cstring>

#include "linux/desktop/x11/XcbHandles.h"

namespace quilex {

namespace {

constexpr std::array<const char*, static_cast<std::size_t>(Atom::count)> kNames{
    "_GTK_FRAME_EXTENTS",
    "MANAGER",
    "_MOTIF_WM_HINTS",
    "_NET_CLIENT_LIST",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_CURRENT_DESKTOP",
    "_NET_RESTACK_WINDOW",
    "_NET_SUPPORTED",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_SYSTEM_TRAY_S0",
    "_NET_WM_DESKTOP",
    "_NET_WM_NAME",
    "_NET_WM_OPAQUE_REGION",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_BELOW",
    "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_MAXIMIZED_HORZ",
    "_NET_WM_STATE_MAXIMIZED_VERT",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_WINDOW_OPACITY",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "UTF8_STRING",
    "_XROOTPMAP_ID",
};

constexpr std::uint32_t kMostItems = 1024;

}  // namespace

X11Atoms::X11Atoms(xcb_connection_t* connection) {
  std::array<xcb_intern_atom_cookie_t, kNames.size()> cookies;
  for (std::size_t index = 0; index < kNames.size(); ++index) {
    const char* name = kNames[index];
    cookies[index] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  }
  for (std::size_t index = 0; index < kNames.size(); ++index) {
    const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookies[index], nullptr));
    atoms_[index] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }
}

std::vector<std::uint32_t> xcbProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name,
                                       xcb_atom_t type) {
  const auto cookie = xcb_get_property(connection, 0, window, name, type, 0, kMostItems);
  const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply || reply->format != 32) {
    return {};
  }
  const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {items, items + reply->value_len};
}

std::vector<xcb_window_t> xcbChildren(xcb_connection_t* connection, xcb_window_t window) {
  const XcbPointer<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
  if (!tree) {
    return {};
  }
  const xcb_window_t* children = xcb_query_tree_children(tree.get());
  return {children, children + xcb_query_tree_children_length(tree.get())};
}

}  // namespace quilex
