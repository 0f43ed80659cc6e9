#include "linux/DesktopChoice.h"

#include "linux/desktop/wayland/WaylandDesktop.h"
#include "linux/desktop/x11/X11Desktop.h"
#include "linux/toolkit/loop/Log.h"

namespace quilex {

std::unique_ptr<Desktop> openDesktop(std::string& refusal) {
  auto desktop = openWaylandDesktop();
  if (!desktop) {
    refusal = desktop.error().message;
    qCInfo(desktopLog, "Wayland is not used: %s", refusal.c_str());
    desktop = openX11Desktop();
  }
  qCInfo(desktopLog, "plays on %s",
         desktop ? (*desktop)->serverName() : "nothing: there is no X server with 24-bit colour");
  return desktop ? *std::move(desktop) : nullptr;
}

}  // namespace quilex
