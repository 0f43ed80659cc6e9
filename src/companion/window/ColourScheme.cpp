#include "companion/window/ColourScheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStyle>

namespace quilex {

namespace {

const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalObject = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kPortalSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kScheme = QStringLiteral("color-scheme");
// 0 is no preference, and 2 light.
constexpr uint kPrefersDark = 1;

// The portal wraps the value twice.
bool prefersDark(const QVariant& value) {
  QVariant inner = value;
  while (inner.canConvert<QDBusVariant>()) {
    inner = inner.value<QDBusVariant>().variant();
  }
  return inner.toUInt() == kPrefersDark;
}

}  // namespace

QPalette darkPalette() {
  const QColor ground(45, 45, 48);
  const QColor text(235, 235, 235);
  QPalette palette(ground);
  palette.setColor(QPalette::Window, ground);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, QColor(30, 30, 32));
  palette.setColor(QPalette::AlternateBase, QColor(56, 56, 60));
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::PlaceholderText, QColor(160, 160, 160));
  palette.setColor(QPalette::Button, QColor(60, 60, 64));
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::ToolTipBase, ground);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Link, QColor(110, 170, 255));
  palette.setColor(QPalette::Highlight, QColor(45, 115, 215));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(128, 128, 128));
  }
  return palette;
}

ColourScheme::ColourScheme() {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return;
  }
  bus.connect(kPortal, kPortalObject, kPortalSettings, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QDBusMessage)));
  auto question = QDBusMessage::createMethodCall(kPortal, kPortalObject, kPortalSettings, QStringLiteral("Read"));
  question << kAppearance << kScheme;
  auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (reply.isValid()) {
      apply(prefersDark(reply.value().variant()));
    }
  });
}

void ColourScheme::settingChanged(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  if (arguments.size() == 3 && arguments[0].toString() == kAppearance && arguments[1].toString() == kScheme) {
    apply(prefersDark(arguments[2]));
  }
}

void ColourScheme::apply(bool wantsDark) {
  constexpr int kMiddle = 128;
  const bool isDark = QApplication::palette().color(QPalette::Window).lightness() < kMiddle;
  if (wantsDark && !isDark) {
    original_ = Original{QApplication::style()->objectName(), QApplication::palette()};
    // Other styles may paint with colours of their own.
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setPalette(darkPalette());
  } else if (!wantsDark && original_) {
    QApplication::setStyle(original_->style);
    QApplication::setPalette(original_->palette);
    original_.reset();
  }
}

}  // namespace quilex
