#include "linux/Desktop.h"

#include "linux/qt/Log.h"

namespace quilex {

std::unique_ptr<Desktop> Desktop::open(std::string& refusal) {
  auto desktop = openWaylandDesktop(refusal);
  if (!desktop) {
    qCInfo(desktopLog, "Wayland is not used: %s", refusal.c_str());
    desktop = openX11Desktop();
  }
  qCInfo(desktopLog, "plays on %s", desktop ? desktop->serverName() : "nothing: there is no X server with 24-bit colour");
  return desktop;
}

}  // namespace quilex
