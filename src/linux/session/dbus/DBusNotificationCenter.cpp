#include "linux/session/dbus/DBusNotificationCenter.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <utility>

#include "linux/session/dbus/AgentInterface.h"
#include "linux/session/dbus/NotificationSignal.h"
#include "linux/session/dbus/SignalReceiver.h"

namespace quilex {

namespace {

constexpr int kDeliveryTimeoutMilliseconds = 500;

const QString kPath = QLatin1String(NotificationSignal::kPath);
const QString kInterface = QLatin1String(NotificationSignal::kInterface);
const QString kSignal = QLatin1String(NotificationSignal::kMember);
const QString kAgentName = QLatin1String(AgentInterface::kService);

}  // namespace

DBusNotificationCenter::DBusNotificationCenter() = default;
DBusNotificationCenter::~DBusNotificationCenter() = default;

Disposable DBusNotificationCenter::observe(const std::string& name, std::function<void()> handler) {
  mainThread_.check();
  const auto receiver = std::make_shared<SignalReceiver>([run = std::move(handler)](bool) { run(); });
  const QStringList match{QString::fromStdString(name)};
  auto bus = QDBusConnection::sessionBus();
  if (bus.isConnected()) {
    bus.connect(QString(), kPath, kInterface, kSignal, match, QString(), receiver.get(), SLOT(received()));
  }
  return Disposable([receiver, match] {
    QDBusConnection::sessionBus().disconnect(QString(), kPath, kInterface, kSignal, match, QString(), receiver.get(),
                                             SLOT(received()));
  });
}

void DBusNotificationCenter::post(const std::string& name) {
  mainThread_.check();
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return;
  }
  auto message = QDBusMessage::createSignal(kPath, kInterface, kSignal);
  message << QString::fromStdString(name) << QString() << QVariantMap();
  bus.send(message);
  // The bus handles one sender's messages in order, so when it answers this call it has forwarded the signal.
  const auto ping =
      QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                     QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
  bus.call(ping, QDBus::Block, kDeliveryTimeoutMilliseconds);
}

InstanceState claimInstanceName() {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return InstanceState::noBus;
  }
  return bus.registerService(kAgentName) ? InstanceState::first : InstanceState::another;
}

AgentPresence agentPresence() {
  const auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return AgentPresence::noBus;
  }
  return bus.interface()->isServiceRegistered(kAgentName).value() ? AgentPresence::running : AgentPresence::absent;
}

}  // namespace quilex
