#include "linux/session/dbus/SessionLock.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QString>
#include <QVariant>
#include <array>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "linux/session/dbus/BusState.h"

namespace quilex {

namespace {

const QString kLogin = QStringLiteral("org.freedesktop.login1");
const QString kLoginPath = QStringLiteral("/org/freedesktop/login1");

// The interface has the name of the service.
struct ScreenSaver {
  const char* service;
  const char* path;
};
constexpr std::array kScreenSavers{
    ScreenSaver{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
    ScreenSaver{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    ScreenSaver{"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
    ScreenSaver{"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
    ScreenSaver{"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"},
};

BusObject login(const QString& path, const char* interface) {
  return {BusKind::system, kLogin, path, kLogin + "." + interface};
}

/// Looks for the agent's session, one way after another, and watches its lock.
class SessionLock {
 public:
  explicit SessionLock(StandstillReason::Handler handler) : handler_(std::move(handler)) { askForSession(); }
  SessionLock(const SessionLock&) = delete;
  SessionLock& operator=(const SessionLock&) = delete;

 private:
  void askForSession() {
    const QString id = qEnvironmentVariable("XDG_SESSION_ID");
    const auto answered = [this](const QVariant& answer) {
      const QString path = answer.value<QDBusObjectPath>().path();
      path.isEmpty() ? askForDisplay() : watch(path);
    };
    const BusObject manager = login(kLoginPath, "Manager");
    watch_ = id.isEmpty() ? askBus(manager, QStringLiteral("GetSessionByPID"),
                                   {static_cast<uint>(QCoreApplication::applicationPid())}, answered)
                          : askBus(manager, QStringLiteral("GetSession"), {id}, answered);
  }

  // A service of the user is in no session, so it takes the one that has the user's screen.
  void askForDisplay() {
    watch_ = askBus(login(kLoginPath, "Manager"), QStringLiteral("GetUser"), {static_cast<uint>(getuid())},
                    [this](const QVariant& answer) {
                      const QString user = answer.value<QDBusObjectPath>().path();
                      if (!user.isEmpty()) {
                        watch_ = watchBusProperty(login(user, "User"), QStringLiteral("Display"),
                                                  [this](const QVariant& display) { displayIs(display); });
                      }
                    });
  }

  void displayIs(const QVariant& display) {
    if (!display.canConvert<QDBusArgument>()) {
      return;
    }
    QString id;
    QDBusObjectPath path;
    const auto structure = display.value<QDBusArgument>();
    structure.beginStructure();
    structure >> id >> path;
    structure.endStructure();
    if (!id.isEmpty()) {
      watch(path.path());
    }
  }

  void watch(const QString& session) {
    watch_ = watchBusProperty(login(session, "Session"), QStringLiteral("LockedHint"),
                              [this](const QVariant& locked) { handler_(locked.toBool()); });
  }

  StandstillReason::Handler handler_;
  /// The step that is under way.
  std::optional<Disposable> watch_;
};

Disposable watchLock(StandstillReason::Handler handler) {
  auto lock = std::make_shared<SessionLock>(std::move(handler));
  return Disposable([lock = std::move(lock)]() mutable { lock.reset(); });
}

Disposable watchScreenSavers(StandstillReason::Handler handler) {
  struct Watches {
    std::set<std::string> active;
    std::vector<Disposable> tokens;
  };
  auto watches = std::make_shared<Watches>();
  for (const auto& [service, path] : kScreenSavers) {
    const BusObject saver{BusKind::session, QLatin1String(service), QLatin1String(path), QLatin1String(service)};
    watches->tokens.push_back(watchBusFlag(
        saver, QStringLiteral("GetActive"), QStringLiteral("ActiveChanged"),
        [name = std::string(service), handler, raw = watches.get()](const QVariant& active) {
          const bool was = !raw->active.empty();
          active.toBool() ? static_cast<void>(raw->active.insert(name)) : static_cast<void>(raw->active.erase(name));
          if (raw->active.empty() == was) {
            handler(!was);
          }
        }));
  }
  return Disposable([watches = std::move(watches)]() mutable { watches.reset(); });
}

}  // namespace

std::vector<StandstillReason> sessionStandstillReasons() {
  return {{"the session is locked", watchLock}, {"the screen saver is on", watchScreenSavers}};
}

}  // namespace quilex
