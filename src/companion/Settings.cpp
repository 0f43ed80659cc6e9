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
  if (auto* error = std::get_if<JsonSettingsSuite::OpenError>(&opened)) {
    return Failure{std::move(error->message)};
  }
  settings->store_ = std::get<std::unique_ptr<JsonSettingsSuite>>(std::move(opened));
  return settings;
}

Outcome Settings::write() {
  auto error = store_->writeNow(kLockPatience);
  return error ? Outcome(Failure{std::move(error->message)}) : std::nullopt;
}

Result<bool> Settings::allowVideo(const std::string& sign) {
  auto opened = JsonSettingsSuite::open(configHome() / settings::kStandardDefaultsFile, runLoop_);
  if (auto* error = std::get_if<JsonSettingsSuite::OpenError>(&opened)) {
    return Failure{std::move(error->message)};
  }
  auto& defaults = *std::get<0>(opened);
  bool isRefused = defaults.boolean(settings::refusedVideo(sign));
  defaults.remove(settings::refusedVideo(sign));
  if (defaults.string(settings::kLoadingVideo) == sign) {
    isRefused = true;
    defaults.remove(settings::kLoadingVideo);
  }
  if (isRefused) {
    if (auto error = defaults.writeNow(kLockPatience)) {
      return Failure{std::move(error->message)};
    }
  }
  return isRefused;
}

}  // namespace quilex
