#include "linux/session/dbus/SleepMonitor.h"

#include <QDBusConnection>
#include <memory>
#include <utility>

#include "linux/session/dbus/BusNames.h"
#include "linux/session/dbus/SignalReceiver.h"

namespace quilex {

namespace {

const QString kLoginManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString kPrepareForSleep = QStringLiteral("PrepareForSleep");

}  // namespace

Disposable observeWakeFromSleep(std::function<void()> handler) {
  const auto receiver = std::make_shared<SignalReceiver>([handler = std::move(handler)](bool aboutToSleep) {
    if (!aboutToSleep) {
      handler();
    }
  });
  auto bus = QDBusConnection::systemBus();
  if (bus.isConnected()) {
    bus.connect(kLoginService, kLoginPath, kLoginManager, kPrepareForSleep, receiver.get(), SLOT(received(bool)));
  }
  return Disposable([receiver] {
    QDBusConnection::systemBus().disconnect(kLoginService, kLoginPath, kLoginManager, kPrepareForSleep, receiver.get(),
                                            SLOT(received(bool)));
  });
}

}  // namespace quilex
