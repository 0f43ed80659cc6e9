#pragma once

#include <mpv/client.h>

#include <cstdint>

#include "linux/render/VideoOutput.h"
#include "platform/StatusReport.h"

namespace quilex {

/// Reports to the status report and the log what the core does: versions, decoders, the size of the video, frames that
/// came too late, and its messages.
class MpvReport {
 public:
  /// Observes the core. All three must outlive the object.
  MpvReport(mpv_handle* core, VideoOutput& output, StatusReport& report);

  /// Handles a change of the property that was observed with that number; ignores other numbers.
  void propertyChanged(std::uint64_t number, const mpv_event_property& change);
  /// Logs a message that is not an error.
  static void log(const mpv_event_log_message& message);

 private:
  void reportVersions(mpv_handle* core);
  void framesDropped(std::int64_t& before, std::int64_t now);

  VideoOutput& videoOutput_;
  StatusReport& statusReport_;
  /// How many frames of its current file the core has dropped: before decoding, and before showing.
  std::int64_t droppedUndecoded_ = 0;
  std::int64_t droppedUnshown_ = 0;
};

}  // namespace quilex
