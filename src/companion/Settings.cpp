#include "companion/Settings.h"

#include <chrono>
#include <utility>

#include "linux/session/bundle/LinuxBundle.h"
#include "platform/AppInfo.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using namespace std::chrono_literals;

constexpr auto kLockPatience = 10s;

}  // namespace

Result<std::unique_ptr<Settings>> Settings::open() {
  auto settings = std::make_unique<Settings>();
  auto opened = JsonSettingsSuite::open(settingsFile(), settings->runLoop_);
  if (!opened) {
    return failed(opened.error());
  }
  settings->store_ = *std::move(opened);
  return settings;
}

Outcome Settings::write() {
  return store_->writeNow(kLockPatience);
}

Result<bool> Settings::allowVideo(const std::string& sign) {
  const auto opened = JsonSettingsSuite::open(configHome() / settings::kStandardDefaultsFile, runLoop_);
  if (!opened) {
    return failed(opened.error());
  }
  JsonSettingsSuite& defaults = **opened;
  bool isRefused = defaults.boolean(settings::refusedVideo(sign));
  defaults.remove(settings::refusedVideo(sign));
  if (defaults.string(settings::kLoadingVideo) == sign) {
    isRefused = true;
    defaults.remove(settings::kLoadingVideo);
  }
  if (isRefused) {
    if (const auto written = defaults.writeNow(kLockPatience); !written) {
      return failed(written.error());
    }
  }
  return isRefused;
}

}  // namespace quilex
