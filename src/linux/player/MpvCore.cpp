#include "linux/player/MpvCore.h"

#include <array>
#include <clocale>
#include <string>

#include "base/FatalError.h"
#include "library/MediaFormats.h"

namespace quilex {

namespace {

struct Option {
  const char* name;
  const char* value;
};

constexpr std::array kOptions{
    // The user's own settings of the player do not count, and nothing but the file itself is opened.
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
    // The core makes its title again with each frame; a constant costs the least.
    Option{"title", "QuilexHelper"},
    Option{"sub", "no"},
    Option{"audio-display", "no"},
    Option{"stop-screensaver", "no"},
    // The core lives as long as the agent, and never moves on by itself.
    Option{"idle", "yes"},
    Option{"keep-open", "yes"},
    Option{"keep-open-pause", "no"},
    Option{"pause", "yes"},
    // The picture fills the view; frames are handed over when they are due.
    Option{"vo", "libmpv"},
    Option{"panscan", "1.0"},
    Option{"video-timing-offset", "0"},
    // Frames are decoded ahead, so that slow ones and the first ones after a seek are there when they are due.
    Option{"vd-queue-enable", "yes"},
    Option{"vd-queue-max-samples", "4"},
    // Without an audio device the video keeps its pace.
    Option{"audio-fallback-to-null", "yes"},
    Option{"audio-client-name", "QuilexHelper"},
    // The core reads streams of ours. libavformat reads each as the format that is named for it.
    Option{"demuxer", "lavf"},
    Option{"cache", "no"},
    Option{"demuxer-max-back-bytes", "0"},
};

}  // namespace

MpvHandle makeMpvCore() {
  // libmpv reads the numbers in option values as the locale writes them.
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
  // Frames may become larger in the middle of a stream.
  mpv_set_option_string(core.get(), "vd-lavc-o", ("max_pixels=" + std::to_string(kMostPixels)).c_str());
  if (mpv_initialize(core.get()) < 0) {
    fatalError("the player library could not be started");
  }
  return core;
}

}  // namespace quilex
