#pragma once

#include <QString>
#include <QVariant>
#include <functional>

#include "base/Disposable.h"
#include "linux/session/dbus/BusConnection.h"

namespace quilex {

/// An object on a bus.
struct BusObject {
  BusKind bus;
  QString service;
  QString path;
  QString interface;
  /// Whether the bus is to start the service if it does not run.
  bool isStarted = false;
};

/// Notifies of a property's value once it is known and whenever its change is signalled, and with an invalid variant
/// when the service has gone or has no such property; never from inside the call. Without the bus there is no
/// notification. Main thread.
[[nodiscard]] Disposable watchBusProperty(const BusObject& object, const QString& property,
                                          std::function<void(const QVariant& value)> handler);

/// The same for a boolean that a method without arguments returns and a signal announces.
[[nodiscard]] Disposable watchBusFlag(const BusObject& object, const QString& method, const QString& signal,
                                      std::function<void(const QVariant& value)> handler);

/// Calls a method and passes on the first argument of its answer, or an invalid variant when there is none. Without the
/// bus there is no notification. Main thread.
[[nodiscard]] Disposable askBus(const BusObject& object, const QString& method, const QVariantList& arguments,
                                std::function<void(const QVariant& answer)> handler);

}  // namespace quilex
