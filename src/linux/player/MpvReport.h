#pragma once

#include <mpv/client.h>

#include <cstdint>
#include <filesystem>

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
  /// Prints an error, if it is among the first about the item, and logs any other message. A damaged item that is
  /// repeated would fill the disk.
  void log(const mpv_event_log_message& message, const std::filesystem::path& item);
  /// To be called when another item is loaded.
  void forgetErrors() { errors_ = 0; }

 private:
  void reportVersions(mpv_handle* core);
  void framesDropped(std::int64_t& before, std::int64_t now);

  VideoOutput& videoOutput_;
  StatusReport& statusReport_;
  /// How many frames of its current file the core has dropped: before decoding, and before showing.
  std::int64_t droppedUndecoded_ = 0;
  std::int64_t droppedUnshown_ = 0;
  /// How many errors about the item there were.
  int errors_ = 0;
};

}  // namespace quilex
