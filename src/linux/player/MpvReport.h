#pragma once

#include <mpv/client.h>

#include <cstdint>

#include "linux/render/VideoOutput.h"
#include "platform/StatusReport.h"

namespace quilex {

/// What the core says of itself and of its work, for the status report and the log: versions, decoders, the size of the
/// video, frames that came too late, and the core's messages.
class MpvReport {
 public:
  /// Observes the core. All three must outlive the report.
  MpvReport(mpv_handle* core, VideoOutput& output, StatusReport& report);

  /// Takes a change of a property that was observed under that number; ignores the numbers of others.
  void propertyChanged(std::uint64_t number, const mpv_event_property& change);
  /// Logs a message that is not an error.
  static void log(const mpv_event_log_message& message);

 private:
  void reportVersions(mpv_handle* core);
  void framesDropped(std::int64_t& before, std::int64_t now);

  VideoOutput& videoOutput_;
  StatusReport& statusReport_;
  /// Frames that the core has dropped of its current file: before decoding, and before showing.
  std::int64_t droppedUndecoded_ = 0;
  std::int64_t droppedUnshown_ = 0;
};

}  // namespace quilex
