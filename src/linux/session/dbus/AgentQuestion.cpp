#include "linux/session/dbus/AgentQuestion.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include "linux/session/dbus/AgentInterface.h"

namespace quilex {

namespace {

template <typename Value>
QDBusReply<Value> callBus(const char* method, const QVariantList& arguments, std::chrono::milliseconds patience) {
  auto call =
      QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                     QStringLiteral("org.freedesktop.DBus"), QLatin1String(method));
  call.setArguments(arguments);
  return QDBusConnection::sessionBus().call(call, QDBus::Block, static_cast<int>(patience.count()));
}

}  // namespace

AgentAnswer askAgent(std::chrono::milliseconds patience) {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return NoAgent{NoAgent::Reason::noBus, bus.lastError().message().toStdString()};
  }
  const QString service = QLatin1String(AgentInterface::kService);
  const QDBusReply<bool> isThere = callBus<bool>("NameHasOwner", {service}, patience);
  if (!isThere.isValid()) {
    return NoAgent{NoAgent::Reason::noBus, isThere.error().message().toStdString()};
  }
  if (!isThere.value()) {
    return NoAgent{NoAgent::Reason::notRunning, {}};
  }
  auto question =
      QDBusMessage::createMethodCall(service, QLatin1String(AgentInterface::kPath),
                                     QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
  question << QLatin1String(AgentInterface::kName);
  question.setAutoStartService(false);
  const QDBusReply<QVariantMap> reply = bus.call(question, QDBus::Block, static_cast<int>(patience.count()));
  if (!reply.isValid()) {
    return NoAgent{NoAgent::Reason::noAnswer, reply.error().message().toStdString()};
  }
  AgentStatus status;
  const QVariantMap values = reply.value();
  for (const AgentProperty& each : agentProperties()) {
    if (const auto value = values.find(QLatin1String(each.name)); value != values.end()) {
      each.set(status, *value);
    }
  }
  return status;
}

std::vector<std::uint32_t> statusItemHosts(std::chrono::milliseconds patience) {
  std::vector<std::uint32_t> processes;
  const QDBusReply<QStringList> names = callBus<QStringList>("ListNames", {}, patience);
  for (const QString& name : names.isValid() ? names.value() : QStringList()) {
    if (name.startsWith(QStringLiteral("org.kde.StatusNotifierHost"))) {
      const QDBusReply<uint> process = callBus<uint>("GetConnectionUnixProcessID", {name}, patience);
      if (process.isValid()) {
        processes.push_back(process.value());
      }
    }
  }
  return processes;
}

}  // namespace quilex
