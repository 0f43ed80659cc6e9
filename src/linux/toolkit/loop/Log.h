#pragma once

#include <QLoggingCategory>
#include <optional>
#include <string>
#include <string_view>

namespace quilex {

// The rooms of the log, for qCDebug and its kin. All are off until `startLog` turns them on.
Q_DECLARE_LOGGING_CATEGORY(desktopLog)
Q_DECLARE_LOGGING_CATEGORY(renderLog)
Q_DECLARE_LOGGING_CATEGORY(mpvLog)
Q_DECLARE_LOGGING_CATEGORY(playbackLog)
Q_DECLARE_LOGGING_CATEGORY(settingsLog)
Q_DECLARE_LOGGING_CATEGORY(serviceLog)
Q_DECLARE_LOGGING_CATEGORY(trayLog)

/// What `startLog` understands, for the help.
std::string logHelp();

/// Writes the log of the rooms that `wish` names to standard error, one line a message, with time, level and room; and
/// with the level as systemd marks it (sd-daemon(3)) where standard error leads to the journal. `wish` is a list like
/// "playback=debug,mpv=info"; "all" stands for every room, and a room without a level has all of its messages. Later
/// entries count more. An empty one leaves the log off. Returns what is wrong with `wish`; then nothing was changed.
std::optional<std::string> startLog(std::string_view wish);

}  // namespace quilex
