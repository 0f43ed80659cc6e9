#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/Result.h"
#include "companion/Settings.h"
#include "companion/SettingsTable.h"
#include "companion/VideoLibrary.h"

namespace quilex {

// What a person can change, for the command line and the window alike. Each function opens the user's settings and
// library by itself, waits for other programs' locks and for file systems, and notifies the agent. Any thread.

/// The files that the companion shares with the agent.
struct UserFiles {
  std::unique_ptr<Settings> settings;
  std::unique_ptr<VideoLibrary> library;
};
Result<UserFiles> openUserFiles();

/// Shows the video that `name` stands for, a sign or the beginning of one; returns it.
Result<VideoDetail> playVideo(const std::string& name);
/// Shows the next video of the list whose file exists, or any other one if the list is shuffled; returns it.
Result<VideoDetail> playNextVideo();

/// A removal, and what is needed to take it back.
struct Removal {
  std::vector<VideoRow> rows;
  /// The current video before.
  std::string previousSign;
  /// The video that was shown instead, if the current one was removed.
  std::string nextSign;
  /// Whether the wallpaper was closed, because no other video can be shown.
  bool closedWallpaper = false;
};

/// Removes the videos that `names` stand for, or none if one is unknown. The wallpaper goes on to the next video; if
/// there is none, it is closed. Covers stay until they are swept (`sweepCovers`).
Result<Removal> removeVideos(const std::vector<std::string>& names);
/// Takes a removal back: the rows return to their places, and the wallpaper to its video unless it was directed
/// elsewhere meanwhile.
Outcome restoreVideos(const Removal& removal);
/// Deletes covers without a video.
Outcome sweepCovers();

/// Gives the video another title, which must not be empty.
Outcome renameVideo(const std::string& sign, const std::string& title);

/// Changes a setting to a value that `Setting::parse` returned, or one as valid. Returns a note for the person if that
/// has no effect yet, or nothing.
Result<std::string> changeSetting(const Setting& setting, const Setting::Value& value);

/// Notifies the agent of new videos and records them in the settings. If the current video, `current`, was not in the
/// library before, there was nothing to show, and the video `firstSign` is shown.
Outcome announceImport(Settings& settings, const std::string& firstSign, const std::vector<VideoDetail>& before,
                       const std::string& current);

/// Sign and title, for messages.
std::string titleLine(const VideoDetail& video);

}  // namespace quilex
