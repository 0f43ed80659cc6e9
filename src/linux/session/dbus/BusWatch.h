#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include "linux/session/dbus/BusState.h"

namespace quilex {

/// What the slots of the functions in BusState.h belong to.
class BusWatch : public QObject {
  Q_OBJECT

 public:
  using Handler = std::function<void(const QVariant& value)>;

  BusWatch(BusObject object, Handler handler);

  /// Sends the call and notifies of the answer. Of several answers the last call's counts.
  void ask(const QDBusMessage& call);
  void followProperty(const QString& property);
  void followFlag(const QString& method, const QString& signal);
  /// Notifies no more.
  void stop();

 public slots:  // NOLINT(readability-redundant-access-specifiers): Qt's own
  void propertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);
  void flagChanged(bool flag);

 private:
  void follow(const QDBusMessage& reading);
  void notify(const QVariant& value);

  BusObject object_;
  QDBusConnection bus_;
  Handler handler_;
  QString property_;
  QDBusMessage reading_;
  /// How many values there were and were asked for: an answer to an older question is stale.
  int newest_ = 0;
};

}  // namespace quilex
