#include "linux/player/MpvPlayer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "linux/player/MpvCore.h"
#include "linux/player/MpvNode.h"
#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

// The core's answers to asynchronous requests carry these numbers.
constexpr std::uint64_t kEndOfFile = 1;
constexpr std::uint64_t kIdle = 2;
constexpr std::uint64_t kSoundOutput = 3;
constexpr std::uint64_t kFirstLoad = 1000;  // plus the load's number

// Between two attempts to play a repeating item that cannot be played.
constexpr std::chrono::seconds kFirstRetry{2};
constexpr std::chrono::seconds kLastRetry{60};

}  // namespace

double cubicVolume(float amplitude) {
  return std::isnan(amplitude) ? 0 : 100 * std::cbrt(std::clamp(static_cast<double>(amplitude), 0.0, 1.0));
}

MpvPlayer::MpvPlayer(VideoOutput& output, StatusReport& report)
    : videoOutput_(output),
      report_(report),
      core_(makeMpvCore()),
      coreReport_(core_.get(), output, report),
      sound_(core_.get()),
      wakeup_([this] { drainEvents(); }),
      streamOpened_([this] { handOver(); }) {
  patience_.setSingleShot(true);
  retry_.setSingleShot(true);
  QObject::connect(&retry_, &QTimer::timeout, &retry_, [this] { load(); });
  QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] { refuse("its file system does not answer"); });
  mpv_set_wakeup_callback(
      core_.get(), [](void* player) { static_cast<MpvPlayer*>(player)->wakeup_.signal(); }, this);
  watchEnd();
  mpv_observe_property(core_.get(), kIdle, "idle-active", MPV_FORMAT_FLAG);
  mpv_observe_property(core_.get(), kSoundOutput, "current-ao", MPV_FORMAT_STRING);
  protocol_.addTo(core_.get());
  videoOutput_.attach(core_.get(), [this] {
    if (hasCurrentItem()) {
      load();
    }
  });
}

MpvPlayer::~MpvPlayer() {
  mpv_set_wakeup_callback(core_.get(), nullptr, nullptr);
  // The render context must go before the core.
  videoOutput_.detach();
  protocol_.cancelAll();
}

void MpvPlayer::setFlag(const char* property, bool value) {
  int flag = value ? 1 : 0;
  mpv_set_property_async(core_.get(), 0, property, MPV_FORMAT_FLAG, &flag);
}

void MpvPlayer::play() {
  paused_ = false;
  applyPause();
}

void MpvPlayer::pause() {
  paused_ = true;
  applyPause();
}

void MpvPlayer::setHeld(bool isHeld) {
  held_ = isHeld;
  applyPause();
  if (!held_ && std::exchange(isHeldBack_, false)) {
    begin();
  }
}

void MpvPlayer::applyPause() {
  setFlag("pause", paused_ || held_);
}

void MpvPlayer::setVolume(float amplitude) {
  amplitude_ = amplitude;
  double percent = cubicVolume(amplitude_);
  mpv_set_property_async(core_.get(), 0, "volume", MPV_FORMAT_DOUBLE, &percent);
  sound_.setAudible(!muted_ && percent > 0);
}

void MpvPlayer::setMuted(bool muted) {
  muted_ = muted;
  setFlag("mute", muted_);
  sound_.setAudible(!muted_ && cubicVolume(amplitude_) > 0);
}

void MpvPlayer::setRepeating(bool repeats) {
  if (repeats == repeating_) {
    return;
  }
  repeating_ = repeats;
  retry_.stop();
  watchEnd();
  if (stream_) {
    stream_->setRepeating(repeats);
  }
  if (form_ == MediaStream::Form::bytes) {
    const char* loops = repeats ? "inf" : "no";
    mpv_set_property_async(core_.get(), 0, "file-local-options/loop-file", MPV_FORMAT_STRING, &loops);
  }
}

void MpvPlayer::replaceCurrentItem(const std::filesystem::path& file) {
  if (ended_ && file == item_ && status_ == PlayerItemStatus::readyToPlay) {
    seekToZero();
    return;
  }
  if (file != item_) {
    coreReport_.forgetErrors();
  }
  retryPause_ = kFirstRetry;
  refusal_.clear();
  item_ = file;
  status_ = PlayerItemStatus::unknown;
  suitable_ = MediaStream::Form::packets;
  load();
}

void MpvPlayer::load() {
  ++loads_;
  retry_.stop();
  form_ = suitable_;
  ended_ = false;
  playlistEntry_ = 0;
  started_ = false;
  restarted_ = false;
  isHeldBack_ = false;
  stream_ = std::make_shared<MediaStream>(item_, suitable_, repeating_, [this] { streamOpened_.signal(); });
  patience_.start(MediaStream::kPatience);
  qCDebug(mpvLog, "opens %s", item_.c_str());
}

// Gives the stream to the core once it is open, unless the player is held.
void MpvPlayer::handOver() {
  const Result<MediaStream::Facts>* opened = stream_ && playlistEntry_ == 0 ? stream_->opened() : nullptr;
  if (opened == nullptr || !patience_.isActive()) {
    return;
  }
  patience_.stop();
  if (!*opened) {
    refuse(opened->error().message.c_str());
    return;
  }
  if (held_) {
    isHeldBack_ = true;
  } else {
    begin();
  }
}

// Even a paused core would decode the first frames.
void MpvPlayer::begin() {
  const MediaStream::Facts& facts = **stream_->opened();
  form_ = facts.form;
  commandAsync(core_.get(), kFirstLoad + loads_,
               {{"name", "loadfile"}, {"url", protocol_.offer(stream_)}, {"flags", "replace"}}, itemOptions(facts));
}

MpvTexts MpvPlayer::itemOptions(const MediaStream::Facts& facts) const {
  MpvTexts options{{"demuxer-lavf-format", facts.format}};
  if (facts.form == MediaStream::Form::packets) {
    // The header says all there is to know.
    options.emplace_back("demuxer-lavf-probe-info", "no");
  } else if (repeating_) {
    options.emplace_back("loop-file", "inf");
  }
  if (!videoOutput_.turnsPictures()) {
    constexpr std::array kTurns{"", "lavfi=[transpose=clock]", "lavfi=[hflip,vflip]", "lavfi=[transpose=cclock]"};
    options.emplace_back("video-rotate", "no");
    options.emplace_back("vf", kTurns[static_cast<std::size_t>(facts.quarterTurns)]);
  } else if (facts.form == MediaStream::Form::packets) {
    options.emplace_back("video-rotate", std::to_string(90 * facts.quarterTurns));
  }
  return options;
}

void MpvPlayer::seekToZero() {
  if (hasCurrentItem() && status_ != PlayerItemStatus::failed) {
    load();
  }
}

Disposable MpvPlayer::observeStatus(std::function<void(PlayerItemStatus)> handler) {
  return statusObservers_.add(std::move(handler));
}

Disposable MpvPlayer::observeItemEnd(std::function<void()> handler) {
  return endObservers_.add(std::move(handler));
}

void MpvPlayer::drainEvents() {
  for (;;) {
    const mpv_event* event = mpv_wait_event(core_.get(), 0);
    if (event->event_id == MPV_EVENT_NONE) {
      return;
    }
    handle(*event);
  }
}

void MpvPlayer::handle(const mpv_event& event) {
  switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
      if (event.reply_userdata == kFirstLoad + loads_ && event.error < 0) {
        failed();
      } else if (event.reply_userdata == kFirstLoad + loads_) {
        playlistEntry_ = playlistEntryOf(static_cast<const mpv_event_command*>(event.data)->result);
      }
      break;
    case MPV_EVENT_START_FILE:
      started_ = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id == playlistEntry_;
      break;
    case MPV_EVENT_PLAYBACK_RESTART:
      if (started_) {
        restarted();
      }
      break;
    case MPV_EVENT_PROPERTY_CHANGE:
      if (const auto& property = *static_cast<const mpv_event_property*>(event.data); property.data != nullptr) {
        handleChange(event.reply_userdata, property);
      }
      coreReport_.propertyChanged(event.reply_userdata, *static_cast<const mpv_event_property*>(event.data));
      break;
    case MPV_EVENT_LOG_MESSAGE:
      coreReport_.log(*static_cast<const mpv_event_log_message*>(event.data), item_);
      break;
    case MPV_EVENT_END_FILE:
      handleEnd(*static_cast<const mpv_event_end_file*>(event.data));
      break;
    default:
      break;
  }
}

// The first frame or sound is there, after loading or a seek.
void MpvPlayer::restarted() {
  restarted_ = true;
  retryPause_ = kFirstRetry;
  refusal_.clear();
  setStatus(PlayerItemStatus::readyToPlay);
  watchEnd();
}

void MpvPlayer::handleChange(std::uint64_t property, const mpv_event_property& change) {
  switch (property) {
    case kEndOfFile:
      if (*static_cast<const int*>(change.data) != 0) {
        raiseEnd();
      }
      break;
    case kIdle:
      if (*static_cast<const int*>(change.data) != 0) {
        videoOutput_.frameLost();
      }
      break;
    case kSoundOutput:
      sound_.opened(*static_cast<const char* const*>(change.data));
      break;
    default:
      break;
  }
}

void MpvPlayer::handleEnd(const mpv_event_end_file& end) {
  if (playlistEntry_ != 0 && end.playlist_entry_id == playlistEntry_ &&
      (end.reason == MPV_END_FILE_REASON_ERROR || end.reason == MPV_END_FILE_REASON_EOF)) {
    failed();
  }
}

void MpvPlayer::failed() {
  if (form_ == MediaStream::Form::packets && !restarted_) {
    // The format of the packets may have no place for something in the file.
    qCInfo(mpvLog, "the packets of %s cannot be played; hands over its bytes", item_.c_str());
    suitable_ = MediaStream::Form::bytes;
    load();
  } else {
    refuse("it cannot be decoded");
  }
}

void MpvPlayer::refuse(const char* reason) {
  patience_.stop();
  stream_->cancel();
  if (refusal_ != reason) {
    refusal_ = reason;
    std::fprintf(stderr, "cannot play %s: %s\n", item_.c_str(), reason);
    report_.update([&](AgentStatus& each) { each.lastFailure = item_.string() + ": " + reason; });
  }
  commandAsync(core_.get(), 0, {{"name", "stop"}});
  if (repeating_) {
    qCInfo(mpvLog, "tries that again in %lld s", static_cast<long long>(retryPause_.count()));
    retry_.start(retryPause_);
    retryPause_ = std::min(2 * retryPause_, kLastRetry);
  }
  setStatus(PlayerItemStatus::failed);
}

// Observes the end again, because the core then reports whether it is reached now. A change that is undone before this
// thread reads it would otherwise be missed.
void MpvPlayer::watchEnd() {
  mpv_unobserve_property(core_.get(), kEndOfFile);
  mpv_observe_property(core_.get(), kEndOfFile, "eof-reached", MPV_FORMAT_FLAG);
}

void MpvPlayer::raiseEnd() {
  // A repeated single picture never ends.
  if (!started_ || ended_ || (restarted_ && repeating_ && stream_->isStill())) {
    return;
  }
  if (!restarted_) {
    // The end came before anything was shown.
    failed();
    return;
  }
  ended_ = true;
  endObservers_.notify();
}

void MpvPlayer::setStatus(PlayerItemStatus newStatus) {
  if (newStatus != status_) {
    status_ = newStatus;
    statusObservers_.notify(newStatus);
  }
}

}  // namespace quilex
