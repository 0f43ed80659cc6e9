#include "linux/session/dbus/BusState.h"

#include <QDBusMessage>
#include <utility>

#include "linux/session/dbus/BusWatch.h"

namespace quilex {

namespace {

// The watch may be released by its own handler, so it is deleted later.
Disposable owned(BusWatch* watch) {
  return Disposable([watch] {
    watch->stop();
    watch->deleteLater();
  });
}

}  // namespace

Disposable watchBusProperty(const BusObject& object, const QString& property,
                            std::function<void(const QVariant& value)> handler) {
  auto* const watch = new BusWatch(object, std::move(handler));
  watch->followProperty(property);
  return owned(watch);
}

Disposable watchBusFlag(const BusObject& object, const QString& method, const QString& signal,
                        std::function<void(const QVariant& value)> handler) {
  auto* const watch = new BusWatch(object, std::move(handler));
  watch->followFlag(method, signal);
  return owned(watch);
}

Disposable askBus(const BusObject& object, const QString& method, const QVariantList& arguments,
                  std::function<void(const QVariant& answer)> handler) {
  auto* const watch = new BusWatch(object, std::move(handler));
  auto call = QDBusMessage::createMethodCall(object.service, object.path, object.interface, method);
  call.setArguments(arguments);
  call.setAutoStartService(object.isStarted);
  watch->ask(call);
  return owned(watch);
}

}  // namespace quilex
