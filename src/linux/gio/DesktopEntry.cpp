#include "linux/gio/DesktopEntry.h"

#include <gio/gdesktopappinfo.h>

#include <memory>

namespace quilex {

namespace {

struct ObjectReleaser {
  void operator()(void* object) const { g_object_unref(object); }
};

}  // namespace

bool launchDesktopEntry(const std::string& id) {
  const std::unique_ptr<GDesktopAppInfo, ObjectReleaser> entry(g_desktop_app_info_new((id + ".desktop").c_str()));
  return entry && g_app_info_launch(G_APP_INFO(entry.get()), nullptr, nullptr, nullptr) != FALSE;
}

}  // namespace quilex
