#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <cstddef>
#include <memory>

#include "platform/HTTPSession.h"

namespace quilex {

/// A session over Qt's HTTP client, which has a thread of its own; needs a QCoreApplication. Verifies TLS against the
/// system's authorities and goes through the system's proxy. Neither follows redirections nor keeps cookies.
class QtHTTPSession : public HTTPSession {
 public:
  explicit QtHTTPSession(HTTPSessionConfiguration theConfiguration);

  void post(const std::string& url, const std::string& contentType, const std::string& body,
            std::function<void(std::optional<std::string> text)> reply) override;

 private:
  void send(const QNetworkRequest& request, const QByteArray& body,
            std::function<void(std::optional<std::string> text)> reply);

  HTTPSessionConfiguration configuration;
  QNetworkAccessManager manager;
};

}  // namespace quilex
