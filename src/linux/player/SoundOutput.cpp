#include "linux/player/SoundOutput.h"

#include <algorithm>
#include <string_view>

#include "linux/player/MpvNode.h"

namespace quilex {

namespace {

constexpr std::chrono::seconds kFirstPause{30};
constexpr std::chrono::minutes kLongestPause{10};

}  // namespace

SoundOutput::SoundOutput(mpv_handle* playerCore) : core(playerCore), pause(kFirstPause) {
  retry.setSingleShot(true);
  QObject::connect(&retry, &QTimer::timeout, &retry, [this] {
    isRefused = false;
    apply();
  });
}

void SoundOutput::setAudible(bool audible) {
  if (audible && !isAudible) {
    // Somebody wants to hear it now.
    retry.stop();
    isRefused = false;
    pause = kFirstPause;
  }
  isAudible = audible;
  apply();
}

void SoundOutput::opened(const char* driver) {
  if (driver == nullptr || !usesDevice) {
    return;
  }
  isRefused = std::string_view(driver) == "null";
  if (isRefused) {
    retry.start(pause);
    pause = std::min<std::chrono::seconds>(2 * pause, kLongestPause);
    apply();
  } else {
    pause = kFirstPause;
  }
}

void SoundOutput::apply() {
  const bool wanted = isAudible && !isRefused;
  if (wanted == usesDevice) {
    return;
  }
  usesDevice = wanted;
  const char* drivers = wanted ? "" : "null";
  mpv_set_property_async(core, 0, "ao", MPV_FORMAT_STRING, &drivers);
  if (!isRefused) {
    commandAsync(core, 0, {{"name", "ao-reload"}});
  }
}

}  // namespace quilex
