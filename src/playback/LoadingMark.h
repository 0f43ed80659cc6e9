#pragma once

#include <string>

#include "platform/Console.h"
#include "platform/SettingsSuite.h"

namespace quilex {

/// Remembers beyond the death of the agent which video was being loaded, so that one that brings the agent down does
/// not do so at each start. Such a video is refused until a person chooses it. Main thread.
class LoadingMark {
 public:
  /// Refuses the video that was being loaded when the agent last died, and says so on the console. Both arguments must
  /// outlive the instance.
  LoadingMark(SettingsSuite& standardDefaults, Console& console);

  /// A video is about to be loaded; to be called before.
  void set(const std::string& sign);
  /// It shows, or was given up.
  void clear();

  bool refuses(const std::string& sign) const;
  /// A person chose the video.
  void allow(const std::string& sign);

 private:
  SettingsSuite& defaults_;
  bool isSet_ = false;
};

}  // namespace quilex
