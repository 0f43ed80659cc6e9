#include "linux/mpv/MpvPlayer.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

#include "app/FatalError.h"
#include "library/MediaFormats.h"

namespace quilex {

namespace {

// What the answer to an asynchronous request is about.
constexpr std::uint64_t kEndOfFile = 1;
constexpr std::uint64_t kIdle = 2;
constexpr std::uint64_t kChapter = 3;
constexpr std::uint64_t kChapterCount = 4;
constexpr std::uint64_t kFirstLoad = 1000;  // plus the item's generation

// Runs of an item that is repeated, in one go. At the end of them the core seeks to the start, which takes some frames.
constexpr int kRuns = 1000;

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
    // The core works its title out anew with each frame; left to itself, of the name of what it plays, which is a long
    // one for an item that is repeated.
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
    // Text, directories and playlists are not media: only libavformat reads files, and of its formats only those that
    // hold their media themselves.
    Option{"demuxer", "lavf"},
};

// The file many times in a row as one item: an edit decision list, of which the core decodes each part while it still
// shows the one before (mpv's DOCS/edl-mpv.rst; the length in front of a name takes it literally). Each part begins a
// chapter.
std::string repeated(const std::filesystem::path& file) {
  const std::string part = "%" + std::to_string(file.native().size()) + "%" + file.native() + ";";
  std::string list = "edl://";
  list.reserve(list.size() + kRuns * part.size());
  for (int run = 0; run < kRuns; ++run) {
    list += part;
  }
  return list;
}

// The list refers to the file, which the core has been able to play by itself before.
constexpr const char* kRepeatedOptions = "demuxer=,access-references=yes";

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
  const auto allowed =
      std::string("format_whitelist=\"") + kMediaFormats + "\",protocol_whitelist=\"" + kMediaProtocols + "\"";
  mpv_set_option_string(core.get(), "demuxer-lavf-o", allowed.c_str());
  if (mpv_initialize(core.get()) < 0) {
    fatalError("the player library could not be started");
  }
  return core;
}

}  // namespace

double cubicVolume(float amplitude) {
  return std::isnan(amplitude) ? 0 : 100 * std::cbrt(std::clamp(static_cast<double>(amplitude), 0.0, 1.0));
}

MpvPlayer::MpvPlayer(VideoOutput& output) : videoOutput(output), core(makeCore()), wakeup([this] { drainEvents(); }) {
  mpv_set_wakeup_callback(
      core.get(), [](void* player) { static_cast<MpvPlayer*>(player)->wakeup.signal(); }, this);
  mpv_request_log_messages(core.get(), "error");
  mpv_observe_property(core.get(), kEndOfFile, "eof-reached", MPV_FORMAT_FLAG);
  mpv_observe_property(core.get(), kIdle, "idle-active", MPV_FORMAT_FLAG);
  mpv_observe_property(core.get(), kChapterCount, "chapters", MPV_FORMAT_INT64);
  mpv_observe_property(core.get(), kChapter, "chapter", MPV_FORMAT_INT64);
  videoOutput.attach(core.get(), [this] {
    if (hasCurrentItem()) {
      load(form);
    }
  });
}

MpvPlayer::~MpvPlayer() {
  mpv_set_wakeup_callback(core.get(), nullptr, nullptr);
  // The render context goes before the core it belongs to.
  videoOutput.detach();
}

void MpvPlayer::setFlag(const char* property, bool value) {
  int flag = value ? 1 : 0;
  mpv_set_property_async(core.get(), 0, property, MPV_FORMAT_FLAG, &flag);
}

void MpvPlayer::play() {
  setFlag("pause", false);
}

void MpvPlayer::pause() {
  setFlag("pause", true);
}

void MpvPlayer::setVolume(float newAmplitude) {
  amplitude = newAmplitude;
  double percent = cubicVolume(amplitude);
  mpv_set_property_async(core.get(), 0, "volume", MPV_FORMAT_DOUBLE, &percent);
}

void MpvPlayer::setMuted(bool mute) {
  muted = mute;
  setFlag("mute", mute);
}

void MpvPlayer::replaceCurrentItem(const std::filesystem::path& file) {
  if (ended && file == item && status == PlayerItemStatus::readyToPlay) {
    seekToZero();
    return;
  }
  item = file;
  repeatable = true;
  status = PlayerItemStatus::unknown;
  load(Form::once);
}

void MpvPlayer::load(Form newForm) {
  form = newForm;
  run = 0;
  ended = false;
  playlistEntry = 0;
  started = false;
  restarted = false;
  // An absolute path begins with a slash, which no protocol or option does.
  const std::string list = form == Form::repeated ? repeated(item) : std::string();
  const char* const url = form == Form::repeated ? list.c_str() : item.c_str();
  const char* const options = form == Form::repeated ? kRepeatedOptions : "";
  std::array command{"loadfile", url, "replace", options, static_cast<const char*>(nullptr)};
  mpv_command_async(core.get(), kFirstLoad + ++generation, command.data());
}

void MpvPlayer::seekToZero() {
  if (!hasCurrentItem()) {
    return;
  }
  const bool wasShownWhole = std::exchange(ended, false);
  if (std::exchange(startedOver, false)) {
    return;
  }
  if (wasShownWhole && form == Form::once && repeatable) {
    load(Form::repeated);
    return;
  }
  run = 0;
  std::array command{"seek", "0", "absolute+keyframes", static_cast<const char*>(nullptr)};
  mpv_command_async(core.get(), 0, command.data());
}

Disposable MpvPlayer::observeStatus(std::function<void(PlayerItemStatus)> handler) {
  return statusObservers.add(std::move(handler));
}

Disposable MpvPlayer::observeItemEnd(std::function<void()> handler) {
  return endObservers.add(std::move(handler));
}

void MpvPlayer::drainEvents() {
  for (;;) {
    const mpv_event* event = mpv_wait_event(core.get(), 0);
    if (event->event_id == MPV_EVENT_NONE) {
      return;
    }
    handle(*event);
  }
}

void MpvPlayer::handle(const mpv_event& event) {
  switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
      if (event.reply_userdata == kFirstLoad + generation) {
        if (event.error < 0) {
          failed();
          break;
        }
        const auto& result = static_cast<const mpv_event_command*>(event.data)->result;
        for (int index = 0; result.format == MPV_FORMAT_NODE_MAP && index < result.u.list->num; ++index) {
          if (std::strcmp(result.u.list->keys[index], "playlist_entry_id") == 0) {
            playlistEntry = result.u.list->values[index].u.int64;
          }
        }
      }
      break;
    case MPV_EVENT_START_FILE:
      started = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id == playlistEntry;
      break;
    case MPV_EVENT_PLAYBACK_RESTART:
      // A first frame (or sound) is there: after loading, and after each seek.
      if (started) {
        restarted = true;
        setStatus(PlayerItemStatus::readyToPlay);
        // A change that is undone before this thread looks is not told, so a new run is watched anew: the first look
        // always tells the value.
        mpv_unobserve_property(core.get(), kEndOfFile);
        mpv_observe_property(core.get(), kEndOfFile, "eof-reached", MPV_FORMAT_FLAG);
      }
      break;
    case MPV_EVENT_PROPERTY_CHANGE:
      if (const auto& property = *static_cast<const mpv_event_property*>(event.data); property.data != nullptr) {
        handleChange(event.reply_userdata, property);
      }
      break;
    case MPV_EVENT_LOG_MESSAGE: {
      const auto& message = *static_cast<const mpv_event_log_message*>(event.data);
      std::fprintf(stderr, "player: %s: %s", message.prefix, message.text);
      break;
    }
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
        videoOutput.frameLost();
      }
      break;
    case kChapterCount:
      // The file's own chapters are chapters of each run.
      chaptersOfRun = std::max<std::int64_t>(*static_cast<const std::int64_t*>(change.data) / kRuns, 1);
      break;
    case kChapter:
      enterRun(*static_cast<const std::int64_t*>(change.data) / chaptersOfRun);
      break;
    default:
      break;
  }
}

// The end of a run is told when the next has begun; whoever wants the item again has it already.
void MpvPlayer::enterRun(std::int64_t number) {
  if (form != Form::repeated || !restarted || number <= run) {
    return;
  }
  run = number;
  ended = true;
  startedOver = true;
  endObservers.notify();
  startedOver = false;
}

void MpvPlayer::handleEnd(const mpv_event_end_file& end) {
  if (playlistEntry != 0 && end.playlist_entry_id == playlistEntry &&
      (end.reason == MPV_END_FILE_REASON_ERROR || end.reason == MPV_END_FILE_REASON_EOF)) {
    failed();
  }
}

void MpvPlayer::failed() {
  if (form == Form::repeated) {
    // It played by itself; perhaps its length is not known.
    repeatable = false;
    load(Form::once);
  } else {
    setStatus(PlayerItemStatus::failed);
  }
}

void MpvPlayer::raiseEnd() {
  if (!started || ended) {
    return;
  }
  if (!restarted) {
    // The end came before anything was shown.
    failed();
    return;
  }
  ended = true;
  endObservers.notify();
}

void MpvPlayer::setStatus(PlayerItemStatus newStatus) {
  if (newStatus != status) {
    status = newStatus;
    if (status == PlayerItemStatus::failed) {
      std::fprintf(stderr, "cannot play %s\n", item.c_str());
    }
    statusObservers.notify(newStatus);
  }
}

}  // namespace quilex
