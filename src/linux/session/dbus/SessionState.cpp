#include "linux/session/dbus/SessionState.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QString>
#include <QVariant>
#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "linux/session/dbus/BusNames.h"
#include "linux/session/dbus/BusState.h"
#include "linux/session/dbus/WatchTogether.h"

namespace quilex {

namespace {

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
  return {BusKind::system, kLoginService, path, kLoginService + "." + interface};
}

/// Looks for the agent's session, one way after another, and watches a flag of it.
class SessionFlag {
 public:
  SessionFlag(QString property, StandstillReason::Handler handler)
      : property_(std::move(property)), handler_(std::move(handler)) {
    askForSession();
  }
  SessionFlag(const SessionFlag&) = delete;
  SessionFlag& operator=(const SessionFlag&) = delete;

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
    watch_ = watchBusProperty(login(session, "Session"), property_,
                              [this](const QVariant& value) { handler_(value.toBool()); });
  }

  QString property_;
  StandstillReason::Handler handler_;
  /// The step that is under way.
  std::optional<Disposable> watch_;
};

Disposable watchFlag(const QString& property, StandstillReason::Handler handler) {
  auto flag = std::make_shared<SessionFlag>(property, std::move(handler));
  return Disposable([flag = std::move(flag)]() mutable { flag.reset(); });
}

Disposable watchLock(StandstillReason::Handler handler) {
  return watchFlag(QStringLiteral("LockedHint"), std::move(handler));
}

Disposable watchScreenSaver(const ScreenSaver& saver, StandstillReason::Handler handler) {
  const QString service = QLatin1String(saver.service);
  return watchBusFlag({BusKind::session, service, QLatin1String(saver.path), service}, QStringLiteral("GetActive"),
                      QStringLiteral("ActiveChanged"),
                      [running = std::move(handler)](const QVariant& active) { running(active.toBool()); });
}

Disposable watchScreenSavers(StandstillReason::Handler handler) {
  std::vector<decltype(StandstillReason::watch)> watches;
  watches.reserve(kScreenSavers.size());
  for (const ScreenSaver& saver : kScreenSavers) {
    watches.emplace_back([&saver](StandstillReason::Handler one) { return watchScreenSaver(saver, std::move(one)); });
  }
  return watchTogether(Together::any, watches, std::move(handler));
}

}  // namespace

Disposable watchIdleSession(StandstillReason::Handler handler) {
  return watchFlag(QStringLiteral("IdleHint"), std::move(handler));
}

std::vector<StandstillReason> sessionStandstillReasons() {
  return {{"the session is locked", watchLock}, {"the screen saver is on", watchScreenSavers}};
}

}  // namespace quilex
