#include "playback/LoadingMark.h"

#include "settings/SettingsKeys.h"

namespace quilex {

LoadingMark::LoadingMark(SettingsSuite& standardDefaults, Console& console) : defaults_(standardDefaults) {
  if (const auto sign = defaults_.string(settings::kLoadingVideo)) {
    defaults_.setBoolean(settings::refusedVideo(*sign), true);
    isSet_ = true;
    clear();
    console.warn("video " + *sign +
                 " was being loaded when the wallpaper last died; it is passed over until it is chosen again: quilex "
                 "play " +
                 *sign);
  }
}

void LoadingMark::set(const std::string& sign) {
  isSet_ = true;
  defaults_.setString(settings::kLoadingVideo, sign);
  defaults_.synchronize();
}

void LoadingMark::clear() {
  if (isSet_) {
    isSet_ = false;
    defaults_.remove(settings::kLoadingVideo);
    defaults_.synchronize();
  }
}

bool LoadingMark::refuses(const std::string& sign) const {
  return defaults_.boolean(settings::refusedVideo(sign));
}

void LoadingMark::allow(const std::string& sign) {
  if (refuses(sign)) {
    defaults_.remove(settings::refusedVideo(sign));
    defaults_.synchronize();
  }
}

}  // namespace quilex
