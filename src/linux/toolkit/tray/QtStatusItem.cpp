#include "linux/toolkit/tray/QtStatusItem.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QString>
#include <chrono>
#include <utility>

#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");

// A panel that starts together with the agent may offer the older tray a little before the newer one.
constexpr std::chrono::seconds kPreferNewer{2};

}  // namespace

QtStatusItem::QtStatusItem(const LinuxBundle& bundle, RunLoop& loop, EmbeddingTray embeddingTray,
                           StatusReport& statusReport)
    : images(bundle),
      runLoop(loop),
      olderTray(std::move(embeddingTray)),
      report(statusReport),
      watchers(kWatcher, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration),
      hostComes([this](bool) { lookForHost(); }) {
  QObject::connect(&watchers, &QDBusServiceWatcher::serviceRegistered, &watchers, [this] { lookForHost(); });
  QDBusConnection::sessionBus().connect(kWatcher, kWatcherPath, kWatcher,
                                        QStringLiteral("StatusNotifierHostRegistered"), &hostComes, SLOT(received()));
  if (olderTray.observe) {
    olderTrayComes.emplace(olderTray.observe([this] { lookForHost(); }));
  }
  lookForHost();
}

void QtStatusItem::setTemplateImage(const std::string& name) {
  const auto file = images.resource(name, "svg");
  if (!file) {
    return;
  }
  // Where the theme has the image, the panel draws it in its own colour.
  icon = QIcon::fromTheme(QString::fromStdString(name + "-symbolic"), QIcon(QString::fromStdString(file->string())));
  if (tray) {
    tray->setIcon(icon);
  }
}

void QtStatusItem::setMenu(std::shared_ptr<Menu> newMenu) {
  menu.show(std::move(newMenu));
}

void QtStatusItem::lookForHost() {
  if (tray) {
    return;
  }
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    lookForOlderTray();
    return;
  }
  // A watcher may run before any panel has told it that it shows items.
  auto question = QDBusMessage::createMethodCall(
      kWatcher, kWatcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << kWatcher << QStringLiteral("IsStatusNotifierHostRegistered");
  question.setAutoStartService(false);
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), &watchers);
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, &watchers, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (reply.isValid() && reply.value().variant().toBool()) {
      appear("notifier");
    } else {
      qCInfo(trayLog, "no panel shows status notifier items now");
      lookForOlderTray();
    }
  });
}

void QtStatusItem::lookForOlderTray() {
  if (!tray && !patience && olderTray.isPresent && olderTray.isPresent()) {
    patience.emplace(runLoop.after(kPreferNewer, [this] {
      if (olderTray.isPresent()) {
        appear("embedded");
      }
      patience.reset();
    }));
  }
}

void QtStatusItem::appear(const char* host) {
  if (tray) {
    return;
  }
  qCInfo(trayLog, "the status item is made for a host of the kind %s", host);
  report.update([host](AgentStatus& status) { status.statusItem = host; });
  tray = std::make_unique<QSystemTrayIcon>(icon);
  tray->setToolTip(QStringLiteral("QuilexHelper"));
  tray->setContextMenu(&menu.widget());
  QObject::connect(tray.get(), &QSystemTrayIcon::activated, tray.get(), [this](QSystemTrayIcon::ActivationReason why) {
    if (why == QSystemTrayIcon::Trigger) {
      menu.widget().popup(QCursor::pos());
    }
  });
  tray->show();
}

}  // namespace quilex
