#include "linux/desktop/x11/X11SystemTray.h"

namespace quilex {

X11SystemTray::X11SystemTray(X11Connection& x11)
    : x11_(x11), events_(x11.observeEvents([this](const xcb_generic_event_t& event) {
        if (eventType(event) != XCB_CLIENT_MESSAGE) {
          return;
        }
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (message.type == x11_.atom(Atom::manager) && message.data.data32[1] == x11_.atom(Atom::netSystemTray)) {
          observers_.notify();
        }
      })) {}

bool X11SystemTray::isPresent() const {
  const XcbPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      x11_.xcb(), xcb_get_selection_owner(x11_.xcb(), x11_.atom(Atom::netSystemTray)), nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace quilex
