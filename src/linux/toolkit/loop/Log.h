#pragma once

#include <QLoggingCategory>
#include <string>
#include <string_view>

#include "base/Result.h"

namespace quilex {

// The rooms of the log, for qCDebug and the like. All are off until `startLog` turns them on.
Q_DECLARE_LOGGING_CATEGORY(desktopLog)
Q_DECLARE_LOGGING_CATEGORY(renderLog)
Q_DECLARE_LOGGING_CATEGORY(mpvLog)
Q_DECLARE_LOGGING_CATEGORY(playbackLog)
Q_DECLARE_LOGGING_CATEGORY(settingsLog)
Q_DECLARE_LOGGING_CATEGORY(serviceLog)
Q_DECLARE_LOGGING_CATEGORY(trayLog)

/// What `startLog` understands, for the help.
std::string logHelp();

/// Writes the log of the rooms that `wish` names to standard error, one line a message, with time, level and room. If
/// standard error leads to the journal, each line begins with systemd's mark for the level (sd-daemon(3)). `wish` is a
/// list like "playback=debug,mpv=info"; "all" stands for every room, and a room without a level logs everything. Later
/// entries override earlier ones. An empty list leaves the log off. Fails, and changes nothing, if `wish` is malformed.
Outcome startLog(std::string_view wish);

}  // namespace quilex
