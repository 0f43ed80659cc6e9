#include "linux/desktop/x11/X11SystemTray.h"

namespace quilex {

X11SystemTray::X11SystemTray(X11Connection& x11)
    : connection(x11), events(x11.observeEvents([this](const xcb_generic_event_t& event) {
        if (eventType(event) != XCB_CLIENT_MESSAGE) {
          return;
        }
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (message.type == connection.atom(Atom::manager) &&
            message.data.data32[1] == connection.atom(Atom::netSystemTray)) {
          observers.notify();
        }
      })) {}

bool X11SystemTray::isPresent() const {
  const XcbPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection.xcb(), xcb_get_selection_owner(connection.xcb(), connection.atom(Atom::netSystemTray)), nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace quilex
