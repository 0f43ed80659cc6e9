#include "linux/toolkit/http/ServiceURL.h"

#include <QHostAddress>
#include <QUrl>

namespace quilex {

std::optional<std::string> serviceOrigin(const std::string& address) {
  const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
  const bool loopback = url.host() == "localhost" || QHostAddress(url.host()).isLoopback();
  const bool secure = url.scheme() == "https" || (url.scheme() == "http" && loopback);
  const bool more = url.path().size() > 1 || url.hasQuery() || url.hasFragment() || !url.userInfo().isEmpty();
  if (!url.isValid() || url.host().isEmpty() || !secure || more) {
    return {};
  }
  return url.toString(QUrl::RemovePath).toStdString();
}

}  // namespace quilex
