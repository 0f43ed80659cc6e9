#pragma once

#include <QString>

namespace quilex {

/// The interface of every object with properties (D-Bus Specification, "Standard Interfaces").
inline const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// The login manager, as org.freedesktop.login1(5) has it.
inline const QString kLoginService = QStringLiteral("org.freedesktop.login1");
inline const QString kLoginPath = QStringLiteral("/org/freedesktop/login1");

}  // namespace quilex
