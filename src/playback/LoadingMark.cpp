#include "playback/LoadingMark.h"

#include "settings/SettingsKeys.h"

namespace quilex {

LoadingMark::LoadingMark(SettingsSuite& standardDefaults, Console& console) : defaults(standardDefaults) {
  if (const auto sign = defaults.string(settings::kLoadingVideo)) {
    defaults.setBoolean(settings::refusedVideo(*sign), true);
    isSet = true;
    clear();
    console.warn("video " + *sign +
                 " was being loaded when the wallpaper last died; it is passed over until it is chosen again: quilex "
                 "play " +
                 *sign);
  }
}

void LoadingMark::set(const std::string& sign) {
  isSet = true;
  defaults.setString(settings::kLoadingVideo, sign);
  defaults.synchronize();
}

void LoadingMark::clear() {
  if (isSet) {
    isSet = false;
    defaults.remove(settings::kLoadingVideo);
    defaults.synchronize();
  }
}

bool LoadingMark::refuses(const std::string& sign) const {
  return defaults.boolean(settings::refusedVideo(sign));
}

void LoadingMark::allow(const std::string& sign) {
  if (refuses(sign)) {
    defaults.remove(settings::refusedVideo(sign));
    defaults.synchronize();
  }
}

}  // namespace quilex
