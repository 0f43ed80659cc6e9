#include "linux/toolkit/tray/QtStatusItem.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QString>
#include <chrono>
#include <utility>

#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");

// A panel that starts at the same time as the agent may offer the older tray a little before the newer one.
constexpr std::chrono::seconds kPreferNewer{2};

// A Wayland compositor gives a menu that belongs to no window of its client a window's frame and place. There the panel
// alone opens the menu, which it reads over D-Bus.
bool canPlaceMenu() {
  return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

}  // namespace

QtStatusItem::QtStatusItem(const LinuxBundle& bundle, RunLoop& runLoop, EmbeddingTray olderTray, StatusReport& report)
    : bundle_(bundle),
      runLoop_(runLoop),
      olderTray_(std::move(olderTray)),
      report_(report),
      watchers_(kWatcher, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration),
      hostComes_([this](bool) { lookForHost(); }) {
  QObject::connect(&watchers_, &QDBusServiceWatcher::serviceRegistered, &watchers_, [this] { lookForHost(); });
  QDBusConnection::sessionBus().connect(kWatcher, kWatcherPath, kWatcher,
                                        QStringLiteral("StatusNotifierHostRegistered"), &hostComes_, SLOT(received()));
  if (olderTray_.observe) {
    olderTrayComes_.emplace(olderTray_.observe([this] { lookForHost(); }));
  }
  lookForHost();
}

void QtStatusItem::setTemplateImage(const std::string& name) {
  const auto file = bundle_.resource(name, "svg");
  if (!file) {
    return;
  }
  // If the icon theme has the image, the panel draws it in its own colour.
  icon_ = QIcon::fromTheme(QString::fromStdString(name + "-symbolic"), QIcon(QString::fromStdString(file->string())));
  if (tray_) {
    tray_->setIcon(icon_);
  }
}

void QtStatusItem::setMenu(std::shared_ptr<Menu> menu) {
  mainThread_.check();
  menu_.show(std::move(menu));
}

void QtStatusItem::lookForHost() {
  if (tray_) {
    return;
  }
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    lookForOlderTray();
    return;
  }
  // A watcher may run before any panel has registered as a host.
  auto question = QDBusMessage::createMethodCall(
      kWatcher, kWatcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << kWatcher << QStringLiteral("IsStatusNotifierHostRegistered");
  question.setAutoStartService(false);
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), &watchers_);
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, &watchers_, [this, answer] {
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
  if (!tray_ && !patience_ && olderTray_.isPresent && olderTray_.isPresent()) {
    patience_.emplace(runLoop_.after(kPreferNewer, [this] {
      if (olderTray_.isPresent()) {
        appear("embedded");
      }
      patience_.reset();
    }));
  }
}

void QtStatusItem::appear(const char* host) {
  if (tray_) {
    return;
  }
  qCInfo(trayLog, "the status item is made for a host of the kind %s", host);
  report_.update([host](AgentStatus& status) { status.statusItem = host; });
  tray_ = std::make_unique<QSystemTrayIcon>(icon_);
  tray_->setToolTip(QStringLiteral("QuilexHelper"));
  tray_->setContextMenu(&menu_.widget());
  if (canPlaceMenu()) {
    QObject::connect(tray_.get(), &QSystemTrayIcon::activated, tray_.get(),
                     [this](QSystemTrayIcon::ActivationReason why) {
                       if (why == QSystemTrayIcon::Trigger) {
                         menu_.widget().popup(QCursor::pos());
                       }
                     });
  }
  tray_->show();
}

}  // namespace quilex
