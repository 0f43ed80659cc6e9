#include "linux/dbus/SleepMonitor.h"

#include <QDBusConnection>
#include <memory>
#include <utility>

#include "linux/dbus/SignalReceiver.h"

namespace quilex {

namespace {

const QString kService = QStringLiteral("org.freedesktop.login1");
const QString kPath = QStringLiteral("/org/freedesktop/login1");
const QString kInterface = QStringLiteral("org.freedesktop.login1.Manager");
const QString kSignal = QStringLiteral("PrepareForSleep");

}  // namespace

Disposable observeWakeFromSleep(std::function<void()> handler) {
  const auto receiver = std::make_shared<SignalReceiver>([handler = std::move(handler)](bool aboutToSleep) {
    if (!aboutToSleep) {
      handler();
    }
  });
  auto bus = QDBusConnection::systemBus();
  if (bus.isConnected()) {
    bus.connect(kService, kPath, kInterface, kSignal, receiver.get(), SLOT(received(bool)));
  }
  return Disposable([receiver] {
    QDBusConnection::systemBus().disconnect(kService, kPath, kInterface, kSignal, receiver.get(), SLOT(received(bool)));
  });
}

}  // namespace quilex
