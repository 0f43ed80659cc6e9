#include "linux/session/dbus/BusWatch.h"

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <utility>

#include "linux/session/dbus/BusNames.h"

namespace quilex {

namespace {}  // namespace

BusWatch::BusWatch(BusObject object, Handler handler)
    : object_(std::move(object)),
      bus_(object_.bus == BusKind::session ? QDBusConnection::sessionBus() : QDBusConnection::systemBus()),
      handler_(std::move(handler)) {}

void BusWatch::ask(const QDBusMessage& call) {
  if (!bus_.isConnected()) {
    return;
  }
  const int number = ++newest_;
  auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, number](QDBusPendingCallWatcher* finished) {
    finished->deleteLater();
    if (number == newest_) {
      const QDBusMessage reply = finished->reply();
      const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
      const QVariant first = isAnswer ? reply.arguments().constFirst() : QVariant();
      notify(first.userType() == qMetaTypeId<QDBusVariant>() ? first.value<QDBusVariant>().variant() : first);
    }
  });
}

void BusWatch::followProperty(const QString& property) {
  property_ = property;
  bus_.connect(object_.service, object_.path, kPropertiesInterface, QStringLiteral("PropertiesChanged"), this,
               SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
  auto call =
      QDBusMessage::createMethodCall(object_.service, object_.path, kPropertiesInterface, QStringLiteral("Get"));
  call << object_.interface << property;
  follow(call);
}

void BusWatch::followFlag(const QString& method, const QString& signal) {
  bus_.connect(object_.service, object_.path, object_.interface, signal, this, SLOT(flagChanged(bool)));
  follow(QDBusMessage::createMethodCall(object_.service, object_.path, object_.interface, method));
}

// Reads the value now and whenever the service starts.
void BusWatch::follow(const QDBusMessage& reading) {
  reading_ = reading;
  reading_.setAutoStartService(object_.isStarted);
  auto* const service = new QDBusServiceWatcher(object_.service, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
  connect(service, &QDBusServiceWatcher::serviceRegistered, this, [this] { ask(reading_); });
  connect(service, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
    ++newest_;
    notify({});
  });
  ask(reading_);
}

void BusWatch::propertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList& invalidated) {
  if (interface != object_.interface) {
    return;
  }
  if (const auto value = changed.constFind(property_); value != changed.constEnd()) {
    ++newest_;
    notify(*value);
  } else if (invalidated.contains(property_)) {
    ask(reading_);
  }
}

void BusWatch::flagChanged(bool flag) {
  ++newest_;
  notify(flag);
}

void BusWatch::stop() {
  handler_ = {};
}

void BusWatch::notify(const QVariant& value) {
  if (const Handler running = handler_) {
    running(value);
  }
}

}  // namespace quilex
