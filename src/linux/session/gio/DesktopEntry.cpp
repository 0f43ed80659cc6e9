#include "linux/session/gio/DesktopEntry.h"

#include <gio/gdesktopappinfo.h>

#include <memory>

namespace quilex {

namespace {

struct ObjectReleaser {
  void operator()(void* object) const { g_object_unref(object); }
};

std::unique_ptr<GDesktopAppInfo, ObjectReleaser> findEntry(const std::string& id) {
  return std::unique_ptr<GDesktopAppInfo, ObjectReleaser>(g_desktop_app_info_new((id + ".desktop").c_str()));
}

}  // namespace

bool launchDesktopEntry(const std::string& id) {
  const auto entry = findEntry(id);
  return entry && g_app_info_launch(G_APP_INFO(entry.get()), nullptr, nullptr, nullptr) != FALSE;
}

std::optional<std::string> desktopEntryFile(const std::string& id) {
  const auto entry = findEntry(id);
  const char* const file = entry ? g_desktop_app_info_get_filename(entry.get()) : nullptr;
  return file != nullptr ? std::optional<std::string>(file) : std::nullopt;
}

}  // namespace quilex
