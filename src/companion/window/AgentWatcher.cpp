#include "companion/window/AgentWatcher.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include "linux/session/dbus/AgentInterface.h"
#include "linux/session/dbus/AgentQuestion.h"

namespace quilex {

namespace {

const QString kAgentService = QLatin1String(AgentInterface::kService);
const QString kAgentObject = QLatin1String(AgentInterface::kPath);
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kNoOwner = QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");

}  // namespace

AgentWatcher::AgentWatcher() {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    state_ = State::noBus;
    return;
  }
  owners_.emplace(kAgentService, bus, QDBusServiceWatcher::WatchForOwnerChange);
  connect(&*owners_, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString& /*name*/, const QString& /*before*/, const QString& owner) {
            if (owner.isEmpty()) {
              setState(State::absent);
            } else {
              ask();
            }
          });
  bus.connect(kAgentService, kAgentObject, kProperties, QStringLiteral("PropertiesChanged"), this,
              SLOT(propertiesChanged(QDBusMessage)));
  ask();
}

void AgentWatcher::ask() {
  auto question = QDBusMessage::createMethodCall(kAgentService, kAgentObject, kProperties, QStringLiteral("GetAll"));
  question << QLatin1String(AgentInterface::kName);
  question.setAutoStartService(false);
  const auto call = QDBusConnection::sessionBus().asyncCall(question, static_cast<int>(kAgentPatience.count()));
  auto* const answer = new QDBusPendingCallWatcher(call, this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<QVariantMap> reply = *answer;
    if (reply.isValid()) {
      status_ = AgentStatus();
      apply(reply.value());
      setState(State::running);
      return;
    }
    // An agent that is busy, or ready in a moment, runs all the same; its next change is heard.
    const bool isAbsent = reply.error().type() == QDBusError::ServiceUnknown || reply.error().name() == kNoOwner;
    setState(isAbsent ? State::absent : State::running);
  });
}

void AgentWatcher::propertiesChanged(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  if (arguments.size() >= 2 && arguments[0].toString() == QLatin1String(AgentInterface::kName)) {
    apply(qdbus_cast<QVariantMap>(arguments[1]));
    emit changed();
  }
}

void AgentWatcher::apply(const QVariantMap& values) {
  for (const AgentProperty& each : agentProperties()) {
    if (const auto value = values.find(QLatin1String(each.name)); value != values.end()) {
      each.set(status_, *value);
    }
  }
}

void AgentWatcher::setState(State state) {
  state_ = state;
  if (state_ != State::running) {
    status_ = AgentStatus();
  }
  emit changed();
}

}  // namespace quilex
