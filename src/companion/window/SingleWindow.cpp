#include "companion/window/SingleWindow.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>
#include <utility>

namespace quilex {

namespace {

const QString kApplication = QStringLiteral("org.freedesktop.Application");
constexpr int kActivationMilliseconds = 2000;
constexpr const char* kTokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr const char* kTokenKey = "activation-token";

}  // namespace

SingleWindow::SingleWindow(std::function<void()> activated) : activated_(std::move(activated)) {}

SingleWindow::~SingleWindow() {
  QDBusConnection::sessionBus().unregisterObject(QLatin1String(kPath));
}

bool SingleWindow::claim() {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return true;
  }
  bus.registerVirtualObject(QLatin1String(kPath), this);
  if (bus.registerService(QLatin1String(kService))) {
    return true;
  }
  auto call = QDBusMessage::createMethodCall(QLatin1String(kService), QLatin1String(kPath), kApplication,
                                             QStringLiteral("Activate"));
  QVariantMap platformData;
  if (qEnvironmentVariableIsSet(kTokenVariable)) {
    platformData[QLatin1String(kTokenKey)] = qEnvironmentVariable(kTokenVariable);
  }
  call << platformData;
  bus.call(call, QDBus::Block, kActivationMilliseconds);
  return false;
}

QString SingleWindow::introspect(const QString& /*path*/) const {
  return QStringLiteral(R"(  <interface name="org.freedesktop.Application">
    <method name="Activate">
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
)");
}

bool SingleWindow::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.member() != QStringLiteral("Activate")) {
    return false;
  }
  const auto platformData = qdbus_cast<QVariantMap>(message.arguments().value(0));
  if (const auto token = platformData.find(QLatin1String(kTokenKey)); token != platformData.end()) {
    // The toolkit takes it from here when the window is activated.
    qputenv(kTokenVariable, token->toString().toUtf8());
  }
  activated_();
  return connection.send(message.createReply());
}

}  // namespace quilex
