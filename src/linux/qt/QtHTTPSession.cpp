#include "linux/qt/QtHTTPSession.h"

#include <QFutureWatcher>
#include <QLocale>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPromise>
#include <QStringDecoder>
#include <QThreadPool>
#include <QUrl>
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

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

/// The charset that a Content-Type declares (RFC 9110, 8.3.1); the old default of HTTP's texts if it declares none.
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
  // Nearly every reply, and sparing a large one two copies.
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

/// Whether a whole answer came, of whatever status; Qt takes some of those for errors of the content or the server.
bool isAnswered(const QNetworkReply& reply) {
  const auto error = reply.error();
  return error == QNetworkReply::NoError ||
         (reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid() &&
          error >= QNetworkReply::ContentAccessDenied && error != QNetworkReply::ProtocolFailure);
}

}  // namespace

QtHTTPSession::QtHTTPSession(HTTPSessionConfiguration theConfiguration) : configuration(std::move(theConfiguration)) {}

void QtHTTPSession::post(const std::string& url, const std::string& contentType, const std::string& body,
                         std::function<void(std::optional<std::string> text)> reply) {
  QNetworkRequest request(QUrl(QString::fromStdString(url), QUrl::StrictMode));
  request.setRawHeader("User-Agent", QByteArray::fromStdString(configuration.userAgent));
  request.setRawHeader("Accept-Language", acceptLanguage());
  request.setRawHeader("Content-Type", QByteArray::fromStdString(contentType));
  request.setTransferTimeout(static_cast<int>(configuration.timeout.count()));
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);

  // Which proxy to take may be a matter of running a script or asking the network.
  const auto lookup = std::make_shared<QPromise<QNetworkProxy>>();
  auto* const watcher = new QFutureWatcher<QNetworkProxy>(&manager);
  QObject::connect(watcher, &QFutureWatcherBase::finished, watcher,
                   [this, watcher, request, bytes = QByteArray::fromStdString(body), answer = std::move(reply)] {
                     watcher->deleteLater();
                     manager.setProxy(watcher->result());
                     send(request, bytes, answer);
                   });
  watcher->setFuture(lookup->future());
  QThreadPool::globalInstance()->start([lookup, query = QNetworkProxyQuery(request.url())] {
    lookup->start();
    lookup->addResult(QNetworkProxyFactory::systemProxyForQuery(query).value(0, QNetworkProxy::NoProxy));
    lookup->finish();
  });
}

void QtHTTPSession::send(const QNetworkRequest& request, const QByteArray& body,
                         std::function<void(std::optional<std::string> text)> reply) {
  QNetworkReply* const answer = manager.post(request, body);
  // What comes faster than it is taken up waits outside of this process.
  answer->setReadBufferSize(kReadBufferSize);
  const auto received = std::make_shared<std::string>();
  const auto receive = [answer, received, limit = configuration.maximumReplySize] {
    if (received->empty()) {
      const auto announced = answer->header(QNetworkRequest::ContentLengthHeader).toULongLong();
      received->reserve(std::min<std::size_t>(announced, limit));
    }
    const QByteArray bytes = answer->readAll();
    if (bytes.size() > static_cast<qsizetype>(limit - received->size())) {
      answer->abort();
    } else {
      received->append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    }
  };
  QObject::connect(answer, &QNetworkReply::readyRead, answer, receive);
  QObject::connect(answer, &QNetworkReply::finished, answer, [answer, received, done = std::move(reply)] {
    answer->deleteLater();
    done(isAnswered(*answer) ? decoded(std::move(*received), charset(*answer)) : std::nullopt);
  });
}

}  // namespace quilex
