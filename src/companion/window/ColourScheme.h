#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QPalette>
#include <QString>
#include <optional>

namespace quilex {

/// Follows the desktop's wish for dark windows (org.freedesktop.appearance of the settings portal) where the toolkit
/// does not do so by itself, which it does on most desktops from Qt 6.5 on. Needs a QApplication. Main thread.
class ColourScheme : public QObject {
  Q_OBJECT

 public:
  ColourScheme();

 private slots:  // NOLINT(readability-redundant-access-specifiers): Qt's own
  void settingChanged(const QDBusMessage& message);

 private:
  struct Original {
    QString style;
    QPalette palette;
  };

  void apply(bool wantsDark);

  /// What was in use before dark colours.
  std::optional<Original> original_;
};

/// Light texts on dark grounds.
QPalette darkPalette();

}  // namespace quilex
