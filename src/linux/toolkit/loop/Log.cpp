#include "linux/toolkit/loop/Log.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace quilex {

Q_LOGGING_CATEGORY(desktopLog, "quilex.desktop", QtFatalMsg)
Q_LOGGING_CATEGORY(renderLog, "quilex.render", QtFatalMsg)
Q_LOGGING_CATEGORY(mpvLog, "quilex.mpv", QtFatalMsg)
Q_LOGGING_CATEGORY(playbackLog, "quilex.playback", QtFatalMsg)
Q_LOGGING_CATEGORY(settingsLog, "quilex.settings", QtFatalMsg)
Q_LOGGING_CATEGORY(serviceLog, "quilex.service", QtFatalMsg)
Q_LOGGING_CATEGORY(trayLog, "quilex.tray", QtFatalMsg)

namespace {

constexpr std::string_view kPrefix = "quilex.";
constexpr std::array<std::string_view, 7> kRooms{"desktop", "render", "mpv", "playback", "settings", "service", "tray"};

struct Level {
  QtMsgType type;
  const char* name;
  /// Its name in Qt's rules.
  const char* rule;
  /// Its number in syslog.
  int priority;
};

// The most severe first: each level includes those before it.
constexpr std::array kLevels{
    Level{QtCriticalMsg, "error", "critical", 3},
    Level{QtWarningMsg, "warning", "warning", 4},
    Level{QtInfoMsg, "info", "info", 6},
    Level{QtDebugMsg, "debug", "debug", 7},
};

QtMessageHandler otherMessages = nullptr;
bool leadsToJournal = false;

// Whether standard error is the stream that systemd says is connected to the journal (systemd.exec(5)).
bool isJournal() {
  const char* const stream = std::getenv("JOURNAL_STREAM");
  struct stat file {};
  return stream != nullptr && fstat(STDERR_FILENO, &file) == 0 &&
         stream == std::to_string(file.st_dev) + ":" + std::to_string(file.st_ino);
}

void writeLine(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  const std::string_view category = context.category != nullptr ? context.category : "";
  const auto* const level = std::ranges::find(kLevels, type, &Level::type);
  if (!category.starts_with(kPrefix) || level == kLevels.end()) {
    otherMessages(type, context, text);
    return;
  }
  const QByteArray time = QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toLatin1();
  // File names and texts from a server may contain anything.
  QString clean = text.trimmed();
  std::ranges::replace_if(
      clean, [](QChar each) { return each.category() == QChar::Other_Control; }, QChar(' '));
  const std::string priority = leadsToJournal ? "<" + std::to_string(level->priority) + ">" : "";
  const auto room = category.substr(kPrefix.size());
  std::fprintf(stderr, "%s%s %s %.*s: %s\n", priority.c_str(), time.constData(), level->name,
               static_cast<int>(room.size()), room.data(), clean.toUtf8().constData());
}

template <typename Names>
std::string joined(const Names& names) {
  std::string text;
  for (const auto& name : names) {
    text += (text.empty() ? "" : ", ") + std::string(name);
  }
  return text;
}

std::string levelNames() {
  std::vector<std::string> names;
  std::ranges::transform(kLevels, std::back_inserter(names), &Level::name);
  return joined(names);
}

std::string rules(std::string_view room, const Level* most) {
  std::string text;
  for (const Level& level : kLevels) {
    text += std::string(kPrefix) + std::string(room) + "." + level.rule + (&level <= most ? "=true\n" : "=false\n");
  }
  return text;
}

}  // namespace

std::string logHelp() {
  return "ROOM=LEVEL, with commas between several; ROOM is all or one of " + joined(kRooms) + "; LEVEL is one of " +
         levelNames() + " (debug if left out)";
}

Outcome startLog(std::string_view wish) {
  std::string text;
  while (!wish.empty()) {
    const std::string_view entry = wish.substr(0, wish.find(','));
    wish.remove_prefix(std::min(wish.size(), entry.size() + 1));
    const auto sign = std::min(entry.find('='), entry.size());
    const std::string_view room = entry.substr(0, sign);
    const bool isAll = room == "all";
    if (!isAll && std::ranges::count(kRooms, room) == 0) {
      return failed("\"" + std::string(room) + "\" is no room of the log; there are all, " + joined(kRooms));
    }
    const std::string_view name = sign < entry.size() ? entry.substr(sign + 1) : kLevels.back().name;
    const auto* const level = std::ranges::find(kLevels, name, &Level::name);
    if (level == kLevels.end()) {
      return failed("\"" + std::string(name) + "\" is no level of the log; there are " + levelNames());
    }
    text += rules(isAll ? "*" : room, &*level);
  }
  if (!text.empty()) {
    leadsToJournal = isJournal();
    otherMessages = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(writeLine);
    QLoggingCategory::setFilterRules(QString::fromStdString(text));
  }
  return {};
}

}  // namespace quilex
