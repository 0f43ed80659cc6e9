#include "companion/Settings.h"

#include <chrono>
#include <utility>

#include "app/AppInfo.h"
#include "linux/bundle/LinuxBundle.h"

namespace quilex {

namespace {

using namespace std::chrono_literals;

constexpr auto kLockPatience = 10s;

}  // namespace

Result<std::unique_ptr<Settings>> Settings::open() {
  auto settings = std::make_unique<Settings>();
  auto opened = JsonSettingsSuite::open(configHome() / AppInfo::groupIdentifier / "settings.json", settings->runLoop);
  if (auto* error = std::get_if<JsonSettingsSuite::OpenError>(&opened)) {
    return Failure{std::move(error->message)};
  }
  settings->store = std::get<std::unique_ptr<JsonSettingsSuite>>(std::move(opened));
  return settings;
}

Outcome Settings::write() {
  auto error = store->writeNow(kLockPatience);
  return error ? Outcome(Failure{std::move(error->message)}) : std::nullopt;
}

}  // namespace quilex
