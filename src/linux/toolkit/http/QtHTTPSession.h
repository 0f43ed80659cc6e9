#pragma once

#include <QNetworkAccessManager>
#include <list>
#include <memory>
#include <optional>

#include "base/MainThread.h"
#include "platform/BackgroundWork.h"
#include "platform/HTTPSession.h"
#include "platform/StatusReport.h"

namespace quilex {

/// A session over Qt's HTTP client, which has a thread of its own; needs a QCoreApplication. Verifies TLS against the
/// system's authorities and uses the system's proxy, whose look-up counts as waiting for data. Does not follow
/// redirections or keep cookies.
class QtHTTPSession : public HTTPSession {
 public:
  /// The result of each request is written into `report`.
  QtHTTPSession(HTTPSessionConfiguration configuration, BackgroundWork& backgroundWork, StatusReport& report);
  ~QtHTTPSession() override;

  void post(const HTTPRequest& content, std::function<void(std::optional<std::string> text)> reply) override;

 private:
  struct Exchange;
  using Exchanges = std::list<Exchange>;

  void send(Exchange& exchange, const QNetworkProxy& proxy);
  void read(Exchange& exchange);
  void finish(Exchange& exchange, std::optional<std::string> text);
  void describe(const Exchange& exchange, const std::optional<std::string>& text);

  [[no_unique_address]] MainThread mainThread_;
  HTTPSessionConfiguration configuration_;
  BackgroundWork& backgroundWork_;
  StatusReport& report_;
  QNetworkAccessManager manager_;
  Exchanges exchanges_;
  /// The port of a plain http request that was given up. Its connection is shut down once no request may be using it.
  std::optional<quint16> unfinishedPort_;
};

}  // namespace quilex
