#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace quilex {

/// A monitor, as a report names it.
struct DisplayStatus {
  std::string name;
  /// Place and size in the desktop's global space.
  Rect frame;
  /// Pixels for one unit of that space.
  double scale = 1;
  /// Hz; 0 when it is not known.
  double refreshRate = 0;
  bool operator==(const DisplayStatus&) const = default;
};

/// What the agent says of itself to whoever asks. Texts are empty, numbers 0, while there is nothing to say.
struct AgentStatus {
  // The program, from its start on

  std::string version;
  std::uint32_t processId = 0;
  /// Versions by name, such as "Qt" and "mpv".
  std::map<std::string, std::string> libraries;
  /// XDG_CURRENT_DESKTOP and XDG_SESSION_TYPE of the agent's environment.
  std::string desktop;
  std::string sessionType;
  /// "wayland" or "x11", and why the one before it was not taken.
  std::string backend;
  std::string backendReason;
  /// "gpu" or "cpu", and why that one.
  std::string renderer;
  std::string rendererReason;
  /// The GPU's driver and name, as OpenGL says them.
  std::string gpu;
  std::string settingsFile;
  std::string libraryFile;
  /// The service's origin.
  std::string serviceAddress;

  // The desktop

  std::vector<DisplayStatus> displays;
  /// For which kind of panel the status item was made: "none" until there is one, "notifier" or "embedded".
  std::string statusItem = "none";

  // What is shown

  /// Whether the wallpaper is shown, and moves, as the settings have it.
  bool isOpen = false;
  bool isPlaying = false;
  /// Sign and title of the player's video, and how it is: "none", "loading", "ready" or "failed".
  std::string videoSign;
  std::string videoTitle;
  std::string videoState = "none";
  /// Which video could not be played last, and why.
  std::string lastFailure;
  /// The decoder's description, and the hardware's interface that decodes ("no" when that is not in use).
  std::string decoder;
  std::string hardwareDecoder;
  /// In pixels.
  std::int32_t videoWidth = 0;
  std::int32_t videoHeight = 0;
  /// As the file says it.
  double videoFrameRate = 0;
  /// Raw values of the settings.
  std::int32_t monitorArrange = 0;
  std::int32_t screenIndex = 0;
  std::int32_t playMode = 0;
  double volume = 0;
  bool isMuted = false;
  /// Videos in the playlist.
  std::uint32_t libraryVideos = 0;

  // The service's last answer

  /// HTTP status and size, or what went wrong.
  std::string serviceAnswer;
  bool serviceAnswered = false;
  /// Seconds since the epoch.
  std::int64_t serviceAnswerTime = 0;

  // Counted all the time, and therefore only read

  /// In the last minute: frames that at least one window showed, and frames that came too late to be shown.
  std::uint32_t framesShown = 0;
  std::uint32_t framesDropped = 0;
};

}  // namespace quilex
