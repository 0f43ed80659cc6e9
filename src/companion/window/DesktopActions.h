#pragma once

#include <QAction>
#include <QActionGroup>
#include <QObject>
#include <functional>

#include "companion/window/DesktopSettings.h"

namespace quilex {

/// What can be done to the wallpaper, for the menu and the panel alike. The actions follow the settings. Main thread.
class DesktopActions : public QObject {
  Q_OBJECT

 public:
  /// `settings` must outlive the actions; `next` goes on to the next video.
  DesktopActions(DesktopSettings& settings, std::function<void()> next);

  QAction playPause;
  QAction next;
  QAction openClose;
  QAction mute;
  QAction startAtLogin;
  /// In the order of the setting's values.
  QActionGroup arrangements;
  QActionGroup modes;

  /// Plays on that monitor only.
  void playOnMonitor(int index);

  /// The icons follow the palette.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void addChoice(QActionGroup& group, const QString& text, const char* key);
  template <typename Type>
  void want(const char* key, Type value);
  void follow();

  DesktopSettings& settings_;
};

}  // namespace quilex
