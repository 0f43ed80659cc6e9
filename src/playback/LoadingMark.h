#pragma once

#include <string>

#include "platform/Console.h"
#include "platform/SettingsSuite.h"

namespace quilex {

/// Stores which video is being loaded, so that a video that crashes the agent does so only once: it is refused at the
/// next start, until a person chooses it. Main thread.
class LoadingMark {
 public:
  /// Refuses the video that was being loaded when the agent last died, and warns on the console. `standardDefaults`
  /// must outlive the instance.
  LoadingMark(SettingsSuite& standardDefaults, Console& console);

  /// To be called before a video is loaded.
  void set(const std::string& sign);
  /// To be called when the video shows, has failed, or the agent ends in order.
  void clear();

  bool refuses(const std::string& sign) const;
  /// To be called when a person chooses the video.
  void allow(const std::string& sign);

 private:
  SettingsSuite& defaults_;
  bool isSet_ = false;
};

}  // namespace quilex
