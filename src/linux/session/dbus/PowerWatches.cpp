#include "linux/session/dbus/PowerWatches.h"

#include <QString>
#include <QVariant>
#include <utility>

#include "linux/session/dbus/BusState.h"
#include "linux/session/dbus/WatchTogether.h"

namespace quilex {

namespace {

using Handler = StandstillReason::Handler;

const QString kPower = QStringLiteral("org.freedesktop.UPower");
const QString kPowerPath = QStringLiteral("/org/freedesktop/UPower");

Disposable watchCharge(std::int64_t percent, Handler handler) {
  const BusObject battery{BusKind::system, kPower, kPowerPath + "/devices/DisplayDevice", kPower + ".Device", true};
  return watchBusProperty(battery, QStringLiteral("Percentage"),
                          [percent, running = std::move(handler)](const QVariant& charge) {
                            running(charge.isValid() && charge.toDouble() < static_cast<double>(percent));
                          });
}

Disposable watchProfile(const QString& service, const QString& path, Handler handler) {
  return watchBusProperty(
      {BusKind::system, service, path, service, true}, QStringLiteral("ActiveProfile"),
      [running = std::move(handler)](const QVariant& profile) { running(profile.toString() == "power-saver"); });
}

}  // namespace

Disposable watchOnBattery(Handler handler) {
  return watchBusProperty({BusKind::system, kPower, kPowerPath, kPower, true}, QStringLiteral("OnBattery"),
                          [running = std::move(handler)](const QVariant& value) { running(value.toBool()); });
}

Disposable watchBelowCharge(std::int64_t percent, Handler handler) {
  return watchTogether(Together::all,
                       {watchOnBattery, [percent](Handler one) { return watchCharge(percent, std::move(one)); }},
                       std::move(handler));
}

Disposable watchPowerSaver(Handler handler) {
  const auto profile = [](const char* service, const char* path) {
    return [service, path](Handler one) {
      return watchProfile(QLatin1String(service), QLatin1String(path), std::move(one));
    };
  };
  return watchTogether(Together::any,
                       {profile("net.hadess.PowerProfiles", "/net/hadess/PowerProfiles"),
                        profile("org.freedesktop.UPower.PowerProfiles", "/org/freedesktop/UPower/PowerProfiles")},
                       std::move(handler));
}

Disposable watchGames(Handler handler) {
  const QString service = QStringLiteral("com.feralinteractive.GameMode");
  return watchBusProperty({BusKind::session, service, QStringLiteral("/com/feralinteractive/GameMode"), service},
                          QStringLiteral("ClientCount"),
                          [running = std::move(handler)](const QVariant& count) { running(count.toInt() > 0); });
}

}  // namespace quilex
