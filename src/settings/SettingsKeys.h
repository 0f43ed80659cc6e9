#pragma once

#include <string>

/// The keys of the shared suite, and the defaults of those whose default is not 0, false or absent.
namespace quilex::settings {

inline constexpr const char* kMonitorArrange = "MonitorArrange";
inline constexpr const char* kScreenIndex = "ScreenIndex";
inline constexpr const char* kPlayMode = "PlayMode";
inline constexpr const char* kCurrentVideoSign = "CurrentVideoSign";
inline constexpr const char* kVolume = "Volume";
inline constexpr const char* kMute = "Mute";
inline constexpr const char* kAlreadyImportVideo = "alreadyImportVideo";
inline constexpr const char* kIsOpenPlayer = "IsOpenPlayer";
inline constexpr const char* kIsPlaying = "isPlaying";
inline constexpr const char* kAutolaunch = "autolaunch";
/// When the picture is to stand still; see PauseSettings.
inline constexpr const char* kPauseOnBattery = "PauseOnBattery";
inline constexpr const char* kPauseBelowCharge = "PauseBelowCharge";
inline constexpr const char* kPauseInPowerSaver = "PauseInPowerSaver";
inline constexpr const char* kPauseWhenIdle = "PauseWhenIdle";
inline constexpr const char* kPauseForFullScreen = "PauseForFullScreen";
inline constexpr const char* kPauseForMaximized = "PauseForMaximized";
inline constexpr const char* kPauseForGames = "PauseForGames";
inline constexpr const char* kPauseForPrograms = "PauseForPrograms";
/// Whether a person has emptied the library, after which the settings need not name a video.
inline constexpr const char* kLibraryWasEmptied = "LibraryWasEmptied";
/// The installation's user identifier for the web service.
inline constexpr const char* kUserID = "uuid";

inline constexpr float kDefaultVolume = 0.5F;
inline constexpr bool kDefaultIsOpenPlayer = true;
inline constexpr bool kDefaultIsPlaying = true;
inline constexpr bool kDefaultAutolaunch = true;

/// The file of the agent's own defaults below the user's configuration folder, and its keys.
inline constexpr const char* kStandardDefaultsFile = "com.dravo.quilex.QuilexHelper/defaults.json";
/// The counter that heartbeats carry.
inline constexpr const char* kCounter = "ct";
/// The sign of the video that is being loaded; absent while none is.
inline constexpr const char* kLoadingVideo = "LoadingVideo";
/// The key that is true for a video that crashed the agent while it was being loaded, until a person chooses it.
inline std::string refusedVideo(const std::string& sign) {
  return "RefusedVideo/" + sign;
}

}  // namespace quilex::settings
