#include "linux/player/MpvPlayer.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

#include "base/FatalError.h"
#include "library/MediaFormats.h"
#include "linux/player/MpvNode.h"
#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

// What the answer to an asynchronous request is about.
constexpr std::uint64_t kEndOfFile = 1;
constexpr std::uint64_t kIdle = 2;
constexpr std::uint64_t kSoundOutput = 3;
constexpr std::uint64_t kFirstLoad = 1000;  // plus the item's generation

// The protocol under which the core finds the item's stream; the item's generation follows.
constexpr const char* kProtocol = "quilex";

/// Between two attempts to play an item that is to be repeated and cannot be.
constexpr std::chrono::seconds kFirstRetry{2};
constexpr std::chrono::seconds kLastRetry{60};

struct Option {
  const char* name;
  const char* value;
};

constexpr std::array kOptions{
    // Nothing of the user's player set-up applies, and nothing but the file itself is opened.
    Option{"config", "no"},
    Option{"load-scripts", "no"},
    Option{"load-auto-profiles", "no"},
    Option{"load-stats-overlay", "no"},
    Option{"load-osd-console", "no"},
    Option{"ytdl", "no"},
    Option{"osc", "no"},
    Option{"access-references", "no"},
    Option{"ordered-chapters", "no"},
    Option{"load-unsafe-playlists", "no"},
    Option{"sub-auto", "no"},
    Option{"audio-file-auto", "no"},
    Option{"cover-art-auto", "no"},
    Option{"save-position-on-quit", "no"},
    Option{"resume-playback", "no"},
    // No terminal, no keyboard, nothing over the picture.
    Option{"terminal", "no"},
    Option{"input-default-bindings", "no"},
    Option{"input-builtin-bindings", "no"},
    Option{"input-vo-keyboard", "no"},
    Option{"input-media-keys", "no"},
    Option{"osd-level", "0"},
    // The core works its title out again with each frame; a constant is the cheapest.
    Option{"title", "QuilexHelper"},
    Option{"sub", "no"},
    Option{"audio-display", "no"},
    Option{"stop-screensaver", "no"},
    // One core for the life of the agent, which never moves on by itself.
    Option{"idle", "yes"},
    Option{"keep-open", "yes"},
    Option{"keep-open-pause", "no"},
    Option{"pause", "yes"},
    // The picture fills the view; frames are handed over when they are due.
    Option{"vo", "libmpv"},
    Option{"panscan", "1.0"},
    Option{"video-timing-offset", "0"},
    // Frames decoded ahead, so that one that takes long to decode, or the first ones of a run, are there when due.
    Option{"vd-queue-enable", "yes"},
    Option{"vd-queue-max-samples", "4"},
    // Without an audio device the video keeps its pace.
    Option{"audio-fallback-to-null", "yes"},
    Option{"audio-client-name", "QuilexHelper"},
    // The core reads streams of ours, which libavformat takes apart by the format that is named for each.
    Option{"demuxer", "lavf"},
    Option{"cache", "no"},
    Option{"demuxer-max-back-bytes", "0"},
};

MpvHandle makeCore() {
  // libmpv reads numbers in option texts by the locale.
  std::setlocale(LC_NUMERIC, "C");
  MpvHandle core(mpv_create());
  if (!core) {
    fatalError("the player library could not be set up");
  }
  for (const Option& option : kOptions) {
    if (mpv_set_option_string(core.get(), option.name, option.value) < 0) {
      fatalError(std::string("the player library does not know the option ") + option.name);
    }
  }
  const auto allowed = std::string("format_whitelist=\"") + kMediaFormats + "\",protocol_whitelist=none";
  mpv_set_option_string(core.get(), "demuxer-lavf-o", allowed.c_str());
  // The picture may grow on the way.
  mpv_set_option_string(core.get(), "vd-lavc-o", ("max_pixels=" + std::to_string(kMostPixels)).c_str());
  if (mpv_initialize(core.get()) < 0) {
    fatalError("the player library could not be started");
  }
  return core;
}

}  // namespace

double cubicVolume(float amplitude) {
  return std::isnan(amplitude) ? 0 : 100 * std::cbrt(std::clamp(static_cast<double>(amplitude), 0.0, 1.0));
}

MpvPlayer::MpvPlayer(VideoOutput& output, StatusReport& statusReport)
    : videoOutput_(output),
      report_(statusReport),
      core_(makeCore()),
      coreReport_(core_.get(), output, statusReport),
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
  if (mpv_stream_cb_add_ro(core_.get(), kProtocol, &offer_, openOffered) < 0) {
    fatalError("the player library takes no streams");
  }
  videoOutput_.attach(core_.get(), [this] {
    if (hasCurrentItem()) {
      load();
    }
  });
}

MpvPlayer::~MpvPlayer() {
  mpv_set_wakeup_callback(core_.get(), nullptr, nullptr);
  // The render context goes before the core it belongs to.
  videoOutput_.detach();
  // Its thread may be waiting for the file.
  const std::lock_guard guard(offer_.lock);
  for (const auto& each : offer_.handedOut) {
    if (const auto given = each.lock()) {
      given->cancel();
    }
  }
}

// Called by the core, in a thread of its own.
// NOLINTNEXTLINE(readability-non-const-parameter): the type is the library's
int MpvPlayer::openOffered(void* data, char* uri, mpv_stream_cb_info* info) {
  auto& offered = *static_cast<Offer*>(data);
  const std::lock_guard guard(offered.lock);
  if (offered.stream == nullptr || offered.uri != uri) {
    return MPV_ERROR_LOADING_FAILED;
  }
  using Cookie = std::shared_ptr<MediaStream>;
  info->cookie = new Cookie(offered.stream);
  info->read_fn = [](void* cookie, char* buffer, std::uint64_t bytes) {
    return (*static_cast<Cookie*>(cookie))->read(buffer, bytes);
  };
  info->cancel_fn = [](void* cookie) { (*static_cast<Cookie*>(cookie))->cancel(); };
  info->close_fn = [](void* cookie) {
    (*static_cast<Cookie*>(cookie))->cancel();
    delete static_cast<Cookie*>(cookie);
  };
  if (offered.stream->size() >= 0) {
    info->seek_fn = [](void* cookie, std::int64_t offset) -> std::int64_t {
      const std::int64_t place = (*static_cast<Cookie*>(cookie))->seek(offset);
      return place < 0 ? std::int64_t{MPV_ERROR_GENERIC} : place;
    };
    info->size_fn = [](void* cookie) { return (*static_cast<Cookie*>(cookie))->size(); };
  }
  return 0;
}

void MpvPlayer::setFlag(const char* property, bool value) {
  int flag = value ? 1 : 0;
  mpv_set_property_async(core_.get(), 0, property, MPV_FORMAT_FLAG, &flag);
}

void MpvPlayer::play() {
  setFlag("pause", false);
}

void MpvPlayer::pause() {
  setFlag("pause", true);
}

void MpvPlayer::setVolume(float newAmplitude) {
  amplitude_ = newAmplitude;
  double percent = cubicVolume(amplitude_);
  mpv_set_property_async(core_.get(), 0, "volume", MPV_FORMAT_DOUBLE, &percent);
  sound_.setAudible(!muted_ && percent > 0);
}

void MpvPlayer::setMuted(bool mute) {
  muted_ = mute;
  setFlag("mute", mute);
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
  complaints_ = file == item_ ? complaints_ : 0;
  retryPause_ = kFirstRetry;
  refusal_.clear();
  item_ = file;
  status_ = PlayerItemStatus::unknown;
  suitable_ = MediaStream::Form::packets;
  load();
}

void MpvPlayer::load() {
  ++generation_;
  retry_.stop();
  form_ = suitable_;
  ended_ = false;
  playlistEntry_ = 0;
  started_ = false;
  restarted_ = false;
  stream_ = std::make_shared<MediaStream>(item_, suitable_, repeating_, [this] { streamOpened_.signal(); });
  patience_.start(MediaStream::kPatience);
  qCDebug(mpvLog, "opens %s", item_.c_str());
}

// Gives the core the stream that was opened.
void MpvPlayer::handOver() {
  const MediaStream::Result* result = stream_ && playlistEntry_ == 0 ? stream_->result() : nullptr;
  if (result == nullptr || !patience_.isActive()) {
    return;
  }
  patience_.stop();
  if (const auto* error = std::get_if<MediaInput::Error>(result)) {
    refuse(error->message.c_str());
    return;
  }
  const auto& facts = std::get<MediaStream::Facts>(*result);
  form_ = facts.form;
  const std::string uri = std::string(kProtocol) + "://" + std::to_string(generation_);
  {
    const std::lock_guard guard(offer_.lock);
    std::erase_if(offer_.handedOut, [](const auto& each) { return each.expired(); });
    offer_.handedOut.push_back(stream_);
    offer_.stream = stream_;
    offer_.uri = uri;
  }
  MpvTexts options{{"demuxer-lavf-format", facts.format}};
  if (form_ == MediaStream::Form::packets) {
    // The header says all there is to know.
    options.emplace_back("demuxer-lavf-probe-info", "no");
  } else if (repeating_) {
    options.emplace_back("loop-file", "inf");
  }
  if (!videoOutput_.turnsPictures()) {
    constexpr std::array kTurns{"", "lavfi=[transpose=clock]", "lavfi=[hflip,vflip]", "lavfi=[transpose=cclock]"};
    options.emplace_back("video-rotate", "no");
    options.emplace_back("vf", kTurns[static_cast<std::size_t>(facts.quarterTurns)]);
  } else if (form_ == MediaStream::Form::packets) {
    options.emplace_back("video-rotate", std::to_string(90 * facts.quarterTurns));
  }
  commandAsync(core_.get(), kFirstLoad + generation_, {{"name", "loadfile"}, {"url", uri}, {"flags", "replace"}},
               options);
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
      if (event.reply_userdata == kFirstLoad + generation_) {
        if (event.error < 0) {
          failed();
          break;
        }
        const auto& result = static_cast<const mpv_event_command*>(event.data)->result;
        for (int index = 0; result.format == MPV_FORMAT_NODE_MAP && index < result.u.list->num; ++index) {
          if (std::strcmp(result.u.list->keys[index], "playlist_entry_id") == 0) {
            playlistEntry_ = result.u.list->values[index].u.int64;
          }
        }
      }
      break;
    case MPV_EVENT_START_FILE:
      started_ = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id == playlistEntry_;
      break;
    case MPV_EVENT_PLAYBACK_RESTART:
      // A first frame (or sound) is there: after loading, and after each seek.
      if (started_) {
        restarted_ = true;
        retryPause_ = kFirstRetry;
        refusal_.clear();
        setStatus(PlayerItemStatus::readyToPlay);
        watchEnd();
      }
      break;
    case MPV_EVENT_PROPERTY_CHANGE:
      if (const auto& property = *static_cast<const mpv_event_property*>(event.data); property.data != nullptr) {
        handleChange(event.reply_userdata, property);
      }
      coreReport_.propertyChanged(event.reply_userdata, *static_cast<const mpv_event_property*>(event.data));
      break;
    case MPV_EVENT_LOG_MESSAGE:
      complain(*static_cast<const mpv_event_log_message*>(event.data));
      break;
    case MPV_EVENT_END_FILE:
      handleEnd(*static_cast<const mpv_event_end_file*>(event.data));
      break;
    default:
      break;
  }
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

// A damaged item that is repeated would fill the disk.
void MpvPlayer::complain(const mpv_event_log_message& message) {
  constexpr int kMostComplaints = 10;
  if (message.log_level > MPV_LOG_LEVEL_ERROR) {
    MpvReport::log(message);
    return;
  }
  if (complaints_ < kMostComplaints) {
    std::fprintf(stderr, "player: %s: %s", message.prefix, message.text);
  } else if (complaints_ == kMostComplaints) {
    std::fprintf(stderr, "player: further messages about %s are left out\n", item_.c_str());
  }
  ++complaints_;
}

void MpvPlayer::handleEnd(const mpv_event_end_file& end) {
  if (playlistEntry_ != 0 && end.playlist_entry_id == playlistEntry_ &&
      (end.reason == MPV_END_FILE_REASON_ERROR || end.reason == MPV_END_FILE_REASON_EOF)) {
    failed();
  }
}

void MpvPlayer::failed() {
  if (form_ == MediaStream::Form::packets && !restarted_) {
    // Perhaps the format of the packets has no place for something that the file's own has.
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

// Has the core say whether the end is reached now: a change that was undone before this thread looked is never
// reported, but the first value after observing is.
void MpvPlayer::watchEnd() {
  mpv_unobserve_property(core_.get(), kEndOfFile);
  mpv_observe_property(core_.get(), kEndOfFile, "eof-reached", MPV_FORMAT_FLAG);
}

void MpvPlayer::raiseEnd() {
  // A single picture that is repeated just stays.
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
