#include "companion/window/DesktopSettings.h"

#include <chrono>
#include <utility>

#include "companion/Changes.h"
#include "linux/session/bundle/LinuxBundle.h"

namespace quilex {

namespace {

using namespace std::chrono_literals;

constexpr auto kReadingInterval = 300ms;

}  // namespace

DesktopSettings::DesktopSettings(RunLoop& runLoop, JobQueue& jobs) : runLoop_(runLoop), jobs_(jobs) {
  refresh();
  reading_.emplace(runLoop_.every(kReadingInterval, [this] { refresh(); }));
}

void DesktopSettings::refresh() {
  const std::string before = problem_;
  if (!suite_) {
    auto opened = JsonSettingsSuite::open(settingsFile(), runLoop_);
    problem_ = opened ? std::string() : opened.error().message;
    suite_ = opened ? *std::move(opened) : nullptr;
  }
  if (auto now = all(); now != seen_ || problem_ != before) {
    seen_ = std::move(now);
    emit changed();
  }
}

std::vector<Setting::Value> DesktopSettings::all() const {
  std::vector<Setting::Value> values;
  for (const Setting& setting : allSettings()) {
    values.push_back(current(setting.key));
  }
  return values;
}

Setting::Value DesktopSettings::current(const char* key) const {
  if (const auto wish = wishes_.find(key); wish != wishes_.end()) {
    return wish->second.value;
  }
  const auto setting = findSetting(key);
  return suite_ ? setting->value(*suite_) : setting->absent;
}

void DesktopSettings::set(const char* key, const Setting::Value& value) {
  const auto [wish, isFirst] = wishes_.try_emplace(key, Wish{value, value});
  wish->second.value = value;
  if (isFirst) {
    store(key);
  }
  refresh();
}

void DesktopSettings::store(const std::string& key) {
  Wish& wish = wishes_.at(key);
  wish.sent = wish.value;
  jobs_.run<Result<std::string>>([key, value = wish.sent] { return changeSetting(*findSetting(key), value); },
                                 [this, key](const Result<std::string>& stored) {
                                   const std::string note = stored ? *stored : stored.error().message;
                                   const Wish& wished = wishes_.at(key);
                                   if (wished.value != wished.sent) {
                                     store(key);
                                     return;
                                   }
                                   wishes_.erase(key);
                                   refresh();
                                   if (!note.empty()) {
                                     emit noted(QString::fromStdString(note));
                                   }
                                 });
}

}  // namespace quilex
