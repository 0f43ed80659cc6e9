#pragma once

/// The keys of the shared suite, and what stands for a key that is absent where that is not its type's neutral value.
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
/// Whether the library was emptied on purpose, after which no current video is missing.
inline constexpr const char* kLibraryWasEmptied = "LibraryWasEmptied";

inline constexpr float kDefaultVolume = 0.5F;
inline constexpr bool kDefaultIsOpenPlayer = true;
inline constexpr bool kDefaultIsPlaying = true;
inline constexpr bool kDefaultAutolaunch = true;

}  // namespace quilex::settings
