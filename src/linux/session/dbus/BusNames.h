#pragma once

#include <QString>

namespace quilex {

// Names of interfaces and services of the freedesktop.org specifications and of systemd's login manager.
inline const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
inline const QString kLoginService = QStringLiteral("org.freedesktop.login1");
inline const QString kLoginPath = QStringLiteral("/org/freedesktop/login1");

}  // namespace quilex
