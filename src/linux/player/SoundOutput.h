#pragma once

#include <mpv/client.h>

#include <QTimer>
#include <chrono>

namespace quilex {

/// Decides whether the core opens an audio device: only while there is something to hear, and, where none can be
/// opened, again after a growing pause, since the libraries below complain about each attempt. Otherwise the sound goes
/// nowhere at its own pace. Main thread.
class SoundOutput {
 public:
  /// `core` must outlive the object.
  explicit SoundOutput(mpv_handle* core);

  void setAudible(bool audible);
  /// The name of the output that the core has opened now, or null.
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
