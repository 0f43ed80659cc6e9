#include "linux/player/MpvReport.h"

#include <cstdio>
#include <string>
#include <utility>

#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

// The numbers of the observed properties. The player's own are lower.
enum Number : std::uint64_t {
  decoder = 100,
  hardwareDecoder,
  width,
  height,
  droppedBeforeDecoding,
  droppedBeforeShowing,
};

// The least level of the core's messages that is wanted. Errors always are.
const char* messageLevel() {
  return mpvLog().isDebugEnabled()     ? "debug"
         : mpvLog().isInfoEnabled()    ? "info"
         : mpvLog().isWarningEnabled() ? "warn"
                                       : "error";
}

}  // namespace

MpvReport::MpvReport(mpv_handle* core, VideoOutput& output, StatusReport& report)
    : videoOutput_(output), statusReport_(report) {
  mpv_request_log_messages(core, messageLevel());
  reportVersions(core);
  mpv_observe_property(core, decoder, "video-codec", MPV_FORMAT_STRING);
  mpv_observe_property(core, hardwareDecoder, "hwdec-current", MPV_FORMAT_STRING);
  mpv_observe_property(core, width, "width", MPV_FORMAT_INT64);
  mpv_observe_property(core, height, "height", MPV_FORMAT_INT64);
  mpv_observe_property(core, droppedBeforeDecoding, "decoder-frame-drop-count", MPV_FORMAT_INT64);
  mpv_observe_property(core, droppedBeforeShowing, "frame-drop-count", MPV_FORMAT_INT64);
}

void MpvReport::reportVersions(mpv_handle* core) {
  for (const auto& [name, property] : {std::pair("mpv", "mpv-version"), std::pair("FFmpeg", "ffmpeg-version")}) {
    if (const MpvText text{mpv_get_property_string(core, property)}) {
      // "mpv 0.35.1" or "0.35.1".
      std::string version = text.get();
      version.erase(0, version.rfind(' ') + 1);
      statusReport_.update([&, key = name](AgentStatus& status) { status.libraries[key] = version; });
    }
  }
}

void MpvReport::propertyChanged(std::uint64_t number, const mpv_event_property& change) {
  // Without data there is no video.
  const std::string text = change.format == MPV_FORMAT_STRING ? *static_cast<const char* const*>(change.data) : "";
  const std::int64_t count = change.format == MPV_FORMAT_INT64 ? *static_cast<const std::int64_t*>(change.data) : 0;
  const auto write = [&](auto member, auto value) {
    statusReport_.update([&](AgentStatus& status) { status.*member = std::move(value); });
  };
  switch (number) {
    case decoder:
      qCInfo(mpvLog, "decodes with %s", text.c_str());
      write(&AgentStatus::decoder, text);
      break;
    case hardwareDecoder:
      qCInfo(mpvLog, "hardware that decodes: %s", text.c_str());
      write(&AgentStatus::hardwareDecoder, text);
      break;
    case width:
      write(&AgentStatus::videoWidth, static_cast<std::int32_t>(count));
      break;
    case height:
      write(&AgentStatus::videoHeight, static_cast<std::int32_t>(count));
      break;
    case droppedBeforeDecoding:
      framesDropped(droppedUndecoded_, count);
      break;
    case droppedBeforeShowing:
      framesDropped(droppedUnshown_, count);
      break;
    default:
      break;
  }
}

void MpvReport::framesDropped(std::int64_t& before, std::int64_t now) {
  // The core counts from 0 again with each file.
  const std::int64_t more = now - (now < before ? 0 : before);
  before = now;
  if (more > 0) {
    qCDebug(mpvLog, "%lld frames came too late", static_cast<long long>(more));
    videoOutput_.framesDropped(static_cast<std::uint32_t>(more));
  }
}

void MpvReport::log(const mpv_event_log_message& message, const std::filesystem::path& item) {
  constexpr int kMostErrors = 10;
  if (message.log_level <= MPV_LOG_LEVEL_ERROR) {
    if (errors_ < kMostErrors) {
      std::fprintf(stderr, "player: %s: %s", message.prefix, message.text);
    } else if (errors_ == kMostErrors) {
      std::fprintf(stderr, "player: further messages about %s are left out\n", item.c_str());
    }
    ++errors_;
  } else if (message.log_level <= MPV_LOG_LEVEL_WARN) {
    qCWarning(mpvLog, "%s: %s", message.prefix, message.text);
  } else if (message.log_level <= MPV_LOG_LEVEL_INFO) {
    qCInfo(mpvLog, "%s: %s", message.prefix, message.text);
  } else {
    qCDebug(mpvLog, "%s: %s", message.prefix, message.text);
  }
}

}  // namespace quilex
