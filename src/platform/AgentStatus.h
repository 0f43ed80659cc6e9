#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace quilex {

/// A monitor, for the report.
struct DisplayStatus {
  std::string name;
  /// In the desktop's global space.
  Rect frame;
  /// Device pixels per unit of that space.
  double scale = 1;
  /// Hz; 0 if unknown.
  double refreshRate = 0;
  bool operator==(const DisplayStatus&) const = default;
};

/// The agent's status, for other programs. Texts are empty and numbers are 0 until there is something to report.
struct AgentStatus {
  // Set once, at the start

  std::string version;
  std::uint32_t processId = 0;
  /// Versions by name, such as "Qt" and "mpv".
  std::map<std::string, std::string> libraries;
  /// XDG_CURRENT_DESKTOP and XDG_SESSION_TYPE of the agent's environment.
  std::string desktop;
  std::string sessionType;
  /// "wayland" or "x11"; and why Wayland is not used, if so.
  std::string backend;
  std::string backendReason;
  /// "gpu" or "cpu"; and why that one.
  std::string renderer;
  std::string rendererReason;
  /// The GPU's driver and name, from OpenGL.
  std::string gpu;
  std::string settingsFile;
  std::string libraryFile;
  /// The service's origin.
  std::string serviceAddress;

  // The desktop

  /// How the wallpaper stands on the desktop, in plain English, such as "bottom layer".
  std::string placement;
  /// What the person can do so that the wallpaper is seen, in plain English; empty if it is.
  std::string placementAdvice;
  std::vector<DisplayStatus> displays;
  /// The kind of panel that the status item was made for: "notifier", "embedded", or "none" so far.
  std::string statusItem = "none";

  // What is shown

  /// The settings: whether the wallpaper is shown, and whether it plays.
  bool isOpen = false;
  bool isPlaying = false;
  /// Why it stands still although the settings may have it play, as clauses; empty while it need not.
  std::vector<std::string> standsStillBecause;
  /// Sign and title of the player's video, and its state: "none", "loading", "ready" or "failed".
  std::string videoSign;
  std::string videoTitle;
  std::string videoState = "none";
  /// The last video that could not be played, and why.
  std::string lastFailure;
  /// The decoder's description, and the interface of hardware decoding ("no" when that is not in use).
  std::string decoder;
  std::string hardwareDecoder;
  /// In pixels.
  std::int32_t videoWidth = 0;
  std::int32_t videoHeight = 0;
  /// The settings' raw values.
  std::int32_t monitorArrange = 0;
  std::int32_t screenIndex = 0;
  std::int32_t playMode = 0;
  double volume = 0;
  bool isMuted = false;
  /// Videos in the playlist.
  std::uint32_t libraryVideos = 0;

  // The service's last answer

  /// HTTP status and size, or the error.
  std::string serviceAnswer;
  bool serviceAnswered = false;
  /// Seconds since the epoch.
  std::int64_t serviceAnswerTime = 0;

  // Counters, filled in when the status is read

  /// In the last minute: frames that at least one window showed, and frames that were too late to be shown.
  std::uint32_t framesShown = 0;
  std::uint32_t framesDropped = 0;
};

}  // namespace quilex
