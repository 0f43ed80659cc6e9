#include "linux/session/dbus/AgentObject.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>
#include <QStringList>
#include <algorithm>

#include "linux/session/dbus/AgentInterface.h"
#include "linux/session/dbus/BusNames.h"

namespace quilex {

namespace {

const QString kAgentPath = QLatin1String(AgentInterface::kPath);
const QString kAgentInterface = QLatin1String(AgentInterface::kName);

QVariantMap values(const AgentStatus& status, bool onlySignalled) {
  QVariantMap all;
  for (const AgentProperty& each : agentProperties()) {
    if (!onlySignalled || each.change == AgentProperty::Change::signalled) {
      all[QLatin1String(each.name)] = each.get(status);
    }
  }
  return all;
}

}  // namespace

AgentObject::AgentObject(StatusReport& report)
    : report_(report), changes_(report_.observe([this] {
        if (!signalling_.isActive()) {
          signalling_.start();
        }
      })) {
  signalling_.setSingleShot(true);
  QObject::connect(&signalling_, &QTimer::timeout, this, [this] { signalChanges(); });
  signalled_ = values(report_.read(), true);
  auto bus = QDBusConnection::sessionBus();
  if (bus.isConnected()) {
    bus.registerVirtualObject(kAgentPath, this);
  }
}

AgentObject::~AgentObject() {
  QDBusConnection::sessionBus().unregisterObject(kAgentPath);
}

QString AgentObject::introspect(const QString& /*path*/) const {
  return QString::fromStdString(describeAgentInterface());
}

bool AgentObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.interface() != kPropertiesInterface && !message.interface().isEmpty()) {
    return false;
  }
  return connection.send(answer(message));
}

// Answers org.freedesktop.DBus.Properties as in the D-Bus Specification.
QDBusMessage AgentObject::answer(const QDBusMessage& call) const {
  const QString member = call.member();
  const QString signature = call.signature();
  const QVariantList arguments = call.arguments();
  const bool isGet = member == "Get" && signature == "ss";
  const bool isGetAll = member == "GetAll" && signature == "s";
  const bool isSet = member == "Set" && signature == "ssv";
  if (!isGet && !isGetAll && !isSet) {
    return call.createErrorReply(QDBusError::UnknownMethod, "no such method with such arguments: " + member);
  }
  const QString interface = arguments[0].toString();
  if (!interface.isEmpty() && interface != kAgentInterface) {
    return call.createErrorReply(QDBusError::UnknownInterface, "no such interface: " + interface);
  }
  const QVariantMap all = values(report_.read(), false);
  if (isGetAll) {
    return call.createReply(QVariant(all));
  }
  const QString name = arguments[1].toString();
  if (!all.contains(name)) {
    return call.createErrorReply(QDBusError::UnknownProperty, "no such property: " + name);
  }
  if (isSet) {
    return call.createErrorReply(QDBusError::PropertyReadOnly, "this property can only be read: " + name);
  }
  return call.createReply(QVariant::fromValue(QDBusVariant(all[name])));
}

void AgentObject::signalChanges() {
  const QVariantMap now = values(report_.read(), true);
  QVariantMap changed;
  for (auto each = now.begin(); each != now.end(); ++each) {
    if (each.value() != signalled_[each.key()]) {
      changed[each.key()] = each.value();
    }
  }
  signalled_ = now;
  auto bus = QDBusConnection::sessionBus();
  if (!changed.isEmpty() && bus.isConnected()) {
    auto message = QDBusMessage::createSignal(kAgentPath, kPropertiesInterface, "PropertiesChanged");
    message << kAgentInterface << changed << QStringList();
    bus.send(message);
  }
}

}  // namespace quilex
