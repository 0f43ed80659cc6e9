#pragma once

#include <QNetworkProxy>
#include <QUrl>

namespace quilex {

/// The proxy that the desktop's settings or the environment name for an address. Also resolves the name of the host
/// that a request would connect to. Both may wait forever for the network, so this belongs on a thread that nobody
/// waits for.
QNetworkProxy lookUpProxy(const QUrl& url);

}  // namespace quilex
