#include "linux/desktop/x11/X11ScreenSaver.h"

#include <xcb/screensaver.h>

#include <utility>

namespace quilex {

Disposable watchScreenOff(X11Connection& x11, std::function<void(bool isOff)> handler) {
  const auto* extension = xcb_get_extension_data(x11.xcb(), &xcb_screensaver_id);
  if (extension == nullptr || extension->present == 0) {
    return Disposable([] {});
  }
  xcb_screensaver_select_input(x11.xcb(), x11.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
  const XcbPointer<xcb_screensaver_query_info_reply_t> now(
      xcb_screensaver_query_info_reply(x11.xcb(), xcb_screensaver_query_info(x11.xcb(), x11.root()), nullptr));
  if (now && now->state == XCB_SCREENSAVER_STATE_ON) {
    handler(true);
  }
  const int notify = extension->first_event + XCB_SCREENSAVER_NOTIFY;
  return x11.observeEvents([notify, running = std::move(handler)](const xcb_generic_event_t& event) {
    if (eventType(event) == notify) {
      // A state other than on and off, "cycle", is one of a dark screen too.
      running(reinterpret_cast<const xcb_screensaver_notify_event_t&>(event).state != XCB_SCREENSAVER_STATE_OFF);
    }
  });
}

}  // namespace quilex
