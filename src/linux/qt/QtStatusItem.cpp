#include "linux/qt/QtStatusItem.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QString>
#include <chrono>
#include <utility>

namespace quilex {

namespace {

const QString kHostService = QStringLiteral("org.kde.StatusNotifierWatcher");

// A panel that starts together with the agent may offer the older tray a little before the newer one.
constexpr std::chrono::seconds kPreferNewer{2};

bool hasNotifierHost() {
  const auto bus = QDBusConnection::sessionBus();
  return bus.isConnected() && bus.interface()->isServiceRegistered(kHostService);
}

}  // namespace

QtStatusItem::QtStatusItem(const LinuxBundle& bundle, RunLoop& loop, EmbeddingTray embeddingTray)
    : images(bundle),
      runLoop(loop),
      olderTray(std::move(embeddingTray)),
      hosts(kHostService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration) {
  QObject::connect(&hosts, &QDBusServiceWatcher::serviceRegistered, &hosts, [this] { lookForHost(); });
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
  if (hasNotifierHost()) {
    appear();
  } else if (olderTray.isPresent && olderTray.isPresent() && !patience) {
    patience.emplace(runLoop.after(kPreferNewer, [this] {
      patience.reset();
      if (hasNotifierHost() || olderTray.isPresent()) {
        appear();
      }
    }));
  }
}

void QtStatusItem::appear() {
  if (tray) {
    return;
  }
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
