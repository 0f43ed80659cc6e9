#include "linux/player/SoundOutput.h"

#include <algorithm>
#include <string_view>

#include "linux/player/MpvNode.h"

namespace quilex {

namespace {

constexpr std::chrono::seconds kFirstPause{30};
constexpr std::chrono::minutes kLongestPause{10};

}  // namespace

SoundOutput::SoundOutput(mpv_handle* core) : core_(core), pause_(kFirstPause) {
  retry_.setSingleShot(true);
  QObject::connect(&retry_, &QTimer::timeout, &retry_, [this] {
    isRefused_ = false;
    apply();
  });
}

void SoundOutput::setAudible(bool audible) {
  if (audible && !isAudible_) {
    // The user wants to hear it now.
    retry_.stop();
    isRefused_ = false;
    pause_ = kFirstPause;
  }
  isAudible_ = audible;
  apply();
}

void SoundOutput::opened(const char* driver) {
  if (driver == nullptr || !usesDevice_) {
    return;
  }
  isRefused_ = std::string_view(driver) == "null";
  if (isRefused_) {
    retry_.start(pause_);
    pause_ = std::min<std::chrono::seconds>(2 * pause_, kLongestPause);
    apply();
  } else {
    pause_ = kFirstPause;
  }
}

void SoundOutput::apply() {
  const bool wanted = isAudible_ && !isRefused_;
  if (wanted == usesDevice_) {
    return;
  }
  usesDevice_ = wanted;
  const char* drivers = wanted ? "" : "null";
  mpv_set_property_async(core_, 0, "ao", MPV_FORMAT_STRING, &drivers);
  if (!isRefused_) {
    commandAsync(core_, 0, {{"name", "ao-reload"}});
  }
}

}  // namespace quilex
