#pragma once

#include <QNetworkAccessManager>
#include <list>
#include <memory>
#include <optional>

#include "platform/BackgroundWork.h"
#include "platform/HTTPSession.h"
#include "platform/StatusReport.h"

namespace quilex {

/// A session over Qt's HTTP client, which has a thread of its own; needs a QCoreApplication. Verifies TLS against the
/// system's authorities and goes through the system's proxy; looking that up counts as waiting for data. Neither
/// follows redirections nor keeps cookies.
class QtHTTPSession : public HTTPSession {
 public:
  /// What becomes of each request is written into `report`.
  QtHTTPSession(HTTPSessionConfiguration theConfiguration, BackgroundWork& work, StatusReport& statusReport);
  ~QtHTTPSession() override;

  void post(const HTTPRequest& posted, std::function<void(std::optional<std::string> text)> reply) override;

 private:
  struct Exchange;
  using Exchanges = std::list<Exchange>;

  void send(Exchange& exchange, const QNetworkProxy& proxy);
  void read(Exchange& exchange);
  void finish(Exchange& exchange, std::optional<std::string> text);
  void describe(const Exchange& exchange, const std::optional<std::string>& text);

  HTTPSessionConfiguration configuration_;
  BackgroundWork& backgroundWork_;
  StatusReport& report_;
  QNetworkAccessManager manager_;
  Exchanges exchanges_;
  /// The port that a request over plain http went to and was given up at; its connection is still to be ended.
  std::optional<quint16> unfinishedPort_;
};

}  // namespace quilex
