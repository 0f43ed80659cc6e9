#pragma once

#include <mpv/client.h>

#include <QTimer>
#include <chrono>

namespace quilex {

/// Decides whether the core opens an audio device: only while there is something to hear. When none can be opened, it
/// is tried again after a growing pause, since the libraries below print a message each time. Without a device the core
/// plays the sound into nothing, at its own pace. Main thread.
class SoundOutput {
 public:
  /// `core` must outlive the object.
  explicit SoundOutput(mpv_handle* core);

  void setAudible(bool audible);
  /// To be called when the core has opened an output; its name, or null for none.
  void opened(const char* driver);

 private:
  void apply();

  mpv_handle* core_;
  QTimer retry_;
  std::chrono::seconds pause_;
  bool isAudible_ = true;
  bool isRefused_ = false;
  bool usesDevice_ = true;
};

}  // namespace quilex
