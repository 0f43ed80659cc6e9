#include "linux/toolkit/http/QtHTTPSession.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <QDateTime>
#include <QDir>
#include <QHostAddress>
#include <QLocale>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStringDecoder>
#include <QTimer>
#include <QUrl>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "linux/toolkit/http/ProxyLookup.h"
#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

constexpr qint64 kReadBufferSize = 1 << 20;

/// The user's languages, the most preferred one first (RFC 9110, 12.5.4).
QByteArray acceptLanguage() {
  constexpr qsizetype kMost = 6;
  QStringList languages = QLocale::system().uiLanguages().mid(0, kMost);
  languages.removeAll("C");
  for (qsizetype i = 0; i < languages.size(); ++i) {
    languages[i] += QString(";q=%1").arg(1.0 - 0.1 * static_cast<double>(i), 0, 'f', 1);
  }
  return languages.join(", ").toLatin1();
}

/// The charset that a Content-Type declares (RFC 9110, 8.3.1); if it declares none, ISO 8859-1, the default of older
/// HTTP.
QByteArray charset(const QNetworkReply& reply) {
  constexpr QLatin1String kParameter("charset=");
  const QString contentType = reply.header(QNetworkRequest::ContentTypeHeader).toString();
  for (const QString& part : contentType.split(';').mid(1)) {
    const QString parameter = part.trimmed();
    if (parameter.startsWith(kParameter, Qt::CaseInsensitive)) {
      return parameter.mid(kParameter.size()).remove('"').toLatin1().toLower();
    }
  }
  return "iso-8859-1";
}

std::optional<std::string> decoded(std::string bytes, const QByteArray& charset) {
  constexpr std::array<std::string_view, 3> kExtendAscii = {"utf-8", "us-ascii", "iso-8859-1"};
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  // True for nearly every reply, and saves a large one two copies.
  if (std::ranges::count(kExtendAscii, std::string_view(charset)) > 0 && std::ranges::all_of(bytes, isAscii)) {
    return bytes;
  }
  QStringDecoder decoder(charset.constData());
  if (!decoder.isValid()) {
    return {};
  }
  const QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  return decoder.hasError() ? std::nullopt : std::optional(text.toStdString());
}

/// True if a complete answer came, whatever its status. Qt reports some statuses as errors of the content or the
/// server.
bool isAnswered(const QNetworkReply& reply) {
  const auto error = reply.error();
  return error == QNetworkReply::NoError ||
         (reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid() &&
          error >= QNetworkReply::ContentAccessDenied && error != QNetworkReply::ProtocolFailure);
}

/// Shuts down this process's connections to that port of the loopback host. While a server sends the head of a reply
/// over plain http, Qt's thread keeps reading: it notices neither that the request was aborted nor that the thread
/// should end. Qt gives no access to the socket, so it is found by its peer. TLS has no such problem, and plain http is
/// only allowed for loopback hosts.
void shutDownLoopback(quint16 port) {
  for (const QString& entry : QDir("/proc/self/fd").entryList(QDir::Files | QDir::System)) {
    const int descriptor = entry.toInt();
    sockaddr_storage peer{};
    socklen_t size = sizeof peer;
    if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0) {
      const auto* const address = reinterpret_cast<const sockaddr*>(&peer);
      const bool isNetwork = address->sa_family == AF_INET || address->sa_family == AF_INET6;
      // Both families keep the port in the same place.
      if (isNetwork && QHostAddress(address).isLoopback() &&
          qFromBigEndian(reinterpret_cast<const sockaddr_in*>(&peer)->sin_port) == port) {
        shutdown(descriptor, SHUT_RDWR);
      }
    }
  }
}

}  // namespace

/// A request in progress. Destroying it cancels everything that it waits for, and is allowed in a signal of an object
/// that it owns.
struct QtHTTPSession::Exchange {
  struct LaterDeleter {
    void operator()(QObject* object) const {
      object->disconnect();
      object->deleteLater();
    }
    void operator()(QNetworkReply* ended) const {
      ended->disconnect();
      // Aborting a reply that has failed makes Qt print a warning.
      if (ended->error() == QNetworkReply::NoError) {
        ended->abort();
      }
      ended->deleteLater();
    }
  };

  QNetworkRequest request;
  HTTPRequest content;
  std::function<void(std::optional<std::string> text)> reply;
  /// Ends the exchange on timeout.
  std::unique_ptr<QTimer, LaterDeleter> limit{new QTimer};
  std::optional<Disposable> work;
  std::unique_ptr<QNetworkReply, LaterDeleter> answer;
  std::string received;
  /// True if the session ends before the request.
  bool isGivenUp = false;

  /// Reads what has arrived. False if the reply is too large.
  bool receive() {
    if (received.empty()) {
      const auto announced = answer->header(QNetworkRequest::ContentLengthHeader).toULongLong();
      received.reserve(std::min<std::size_t>(announced, content.maximumReplySize));
    }
    const QByteArray bytes = answer->readAll();
    if (bytes.size() > static_cast<qsizetype>(content.maximumReplySize - received.size())) {
      return false;
    }
    received.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return true;
  }
};

QtHTTPSession::QtHTTPSession(HTTPSessionConfiguration configuration, BackgroundWork& backgroundWork,
                             StatusReport& report)
    : configuration_(std::move(configuration)), backgroundWork_(backgroundWork), report_(report) {}

QtHTTPSession::~QtHTTPSession() {
  while (!exchanges_.empty()) {
    exchanges_.front().reply = [](const auto&) {};
    exchanges_.front().isGivenUp = true;
    finish(exchanges_.front(), {});
  }
}

void QtHTTPSession::post(const HTTPRequest& content, std::function<void(std::optional<std::string> text)> reply) {
  mainThread_.check();
  QNetworkRequest request(QUrl(QString::fromStdString(content.url), QUrl::StrictMode));
  request.setRawHeader("User-Agent", QByteArray::fromStdString(configuration_.userAgent));
  request.setRawHeader("Accept-Language", acceptLanguage());
  request.setRawHeader("Content-Type", QByteArray::fromStdString(content.contentType));
  request.setTransferTimeout(static_cast<int>(configuration_.timeout.count()));
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);

  Exchange& exchange = exchanges_.emplace_back();
  exchange.request = request;
  exchange.content = content;
  exchange.reply = std::move(reply);
  QTimer* const limit = exchange.limit.get();
  limit->setSingleShot(true);
  QObject::connect(limit, &QTimer::timeout, limit, [this, &exchange] { finish(exchange, {}); });
  limit->start(configuration_.timeout);
  const auto proxy = std::make_shared<QNetworkProxy>();
  exchange.work.emplace(backgroundWork_.run([proxy, url = request.url()](const auto&) { *proxy = lookUpProxy(url); },
                                            [this, proxy, &exchange] { send(exchange, *proxy); }));
}

void QtHTTPSession::send(Exchange& exchange, const QNetworkProxy& proxy) {
  exchange.limit->start(configuration_.longest);
  manager_.setProxy(proxy);
  exchange.answer.reset(manager_.post(exchange.request, QByteArray::fromStdString(exchange.content.body)));
  QNetworkReply* const answer = exchange.answer.get();
  // What arrives faster than it is read waits outside this process.
  answer->setReadBufferSize(kReadBufferSize);
  QObject::connect(answer, &QNetworkReply::readyRead, answer, [this, &exchange] {
    if (!exchange.receive()) {
      finish(exchange, {});
    }
  });
  QObject::connect(answer, &QNetworkReply::finished, answer, [this, &exchange] { read(exchange); });
}

void QtHTTPSession::read(Exchange& exchange) {
  if (!isAnswered(*exchange.answer)) {
    finish(exchange, {});
    return;
  }
  struct Body {
    std::string bytes;
    QByteArray charset;
    std::optional<std::string> text;
  };
  const auto body = std::make_shared<Body>(Body{std::move(exchange.received), charset(*exchange.answer), {}});
  exchange.work.emplace(
      backgroundWork_.run([body](const auto&) { body->text = decoded(std::move(body->bytes), body->charset); },
                          [this, body, &exchange] { finish(exchange, std::move(body->text)); }));
}

void QtHTTPSession::finish(Exchange& exchange, std::optional<std::string> text) {
  const auto reply = std::move(exchange.reply);
  if (!exchange.isGivenUp) {
    describe(exchange, text);
  }
  if (!text && exchange.request.url().scheme() == "http") {
    unfinishedPort_ = static_cast<quint16>(exchange.request.url().port(80));
  }
  exchanges_.remove_if([&](const Exchange& each) { return &each == &exchange; });
  // Another request might be using such a connection.
  if (exchanges_.empty() && unfinishedPort_) {
    shutDownLoopback(*std::exchange(unfinishedPort_, {}));
  }
  reply(std::move(text));
}

void QtHTTPSession::describe(const Exchange& exchange, const std::optional<std::string>& text) {
  const QNetworkReply* const answer = exchange.answer.get();
  std::string outcome = "no answer in time";
  if (text) {
    outcome = "HTTP " + answer->attribute(QNetworkRequest::HttpStatusCodeAttribute).toString().toStdString() + ", " +
              std::to_string(text->size()) + " bytes";
  } else if (answer != nullptr && answer->error() != QNetworkReply::NoError) {
    outcome = answer->errorString().toStdString();
  } else if (answer != nullptr) {
    outcome = "an answer that is too large, too slow or no text";
  }
  qCInfo(serviceLog, "%s: %s", exchange.content.url.c_str(), outcome.c_str());
  report_.update([&](AgentStatus& status) {
    status.serviceAnswer = outcome;
    status.serviceAnswered = text.has_value();
    status.serviceAnswerTime = QDateTime::currentSecsSinceEpoch();
  });
}

}  // namespace quilex
