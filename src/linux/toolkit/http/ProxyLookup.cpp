#include "linux/toolkit/http/ProxyLookup.h"

#include <netdb.h>
#include <proxy.h>

#include <memory>
#include <optional>

namespace quilex {

namespace {

struct FactoryDeleter {
  void operator()(pxProxyFactory* factory) const { px_proxy_factory_free(factory); }
};
struct ListDeleter {
  void operator()(char** list) const { px_proxy_factory_free_proxies(list); }
};

/// Reads a proxy as libproxy writes it; nothing for a kind that Qt does not support.
std::optional<QNetworkProxy> proxyOf(const QUrl& url) {
  if (url.scheme() == "direct") {
    return QNetworkProxy(QNetworkProxy::NoProxy);
  }
  const bool isSocks = url.scheme() == "socks" || url.scheme() == "socks5";
  if (!isSocks && url.scheme() != "http") {
    return {};
  }
  return QNetworkProxy(isSocks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy, url.host(),
                       static_cast<quint16>(url.port(isSocks ? 1080 : 80)), url.userName(), url.password());
}

/// Asks libproxy directly. Qt would ask it in a thread that it joins at the end of the process, even if that hangs.
QNetworkProxy systemProxy(const QUrl& url) {
  const std::unique_ptr<pxProxyFactory, FactoryDeleter> factory(px_proxy_factory_new());
  const std::unique_ptr<char*, ListDeleter> list(
      factory ? px_proxy_factory_get_proxies(factory.get(), url.toEncoded().constData()) : nullptr);
  for (char* const* entry = list.get(); entry != nullptr && *entry != nullptr; ++entry) {
    if (const auto proxy = proxyOf(QUrl(QString::fromUtf8(*entry)))) {
      return *proxy;
    }
  }
  return QNetworkProxy::NoProxy;
}

}  // namespace

QNetworkProxy lookUpProxy(const QUrl& url) {
  auto proxy = systemProxy(url);
  // Qt resolves the name again, also in threads that it joins. After this look-up it gets an answer at once.
  const bool isDirect = proxy.type() == QNetworkProxy::NoProxy;
  addrinfo* addresses = nullptr;
  if (getaddrinfo((isDirect ? url.host(QUrl::FullyEncoded) : proxy.hostName()).toUtf8().constData(), nullptr, nullptr,
                  &addresses) == 0) {
    freeaddrinfo(addresses);
  }
  return proxy;
}

}  // namespace quilex
