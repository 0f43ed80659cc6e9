#include "companion/window/DesktopActions.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <utility>

#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

// The style's own icons are black, whatever they lie on.
QIcon tinted(const QIcon& icon) {
  QIcon coloured;
  for (const auto mode : {QIcon::Normal, QIcon::Disabled}) {
    const auto group = mode == QIcon::Normal ? QPalette::Active : QPalette::Disabled;
    QPixmap pixmap = icon.pixmap(QSize(32, 32));
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), QApplication::palette().color(group, QPalette::ButtonText));
    painter.end();
    coloured.addPixmap(pixmap, mode);
  }
  return coloured;
}

QIcon themeIcon(const char* name, QStyle::StandardPixmap fallback) {
  const QLatin1String theme(name);
  return QIcon::hasThemeIcon(theme) ? QIcon::fromTheme(theme) : tinted(QApplication::style()->standardIcon(fallback));
}

void choose(const QActionGroup& group, std::int64_t value) {
  const auto actions = group.actions();
  if (value >= 0 && value < actions.size()) {
    actions[static_cast<qsizetype>(value)]->setChecked(true);
  }
}

}  // namespace

// An action is also switched to follow the settings.
template <typename Type>
void DesktopActions::want(const char* key, Type value) {
  if (settings_.value<Type>(key) != value) {
    settings_.set(key, value);
  }
}

DesktopActions::DesktopActions(DesktopSettings& settings, std::function<void()> nextVideo)
    : arrangements(this), modes(this), settings_(settings) {
  const auto toggle = [this](const char* key) { settings_.set(key, !settings_.value<bool>(key)); };
  playPause.setShortcut(QStringLiteral("Ctrl+P"));
  connect(&playPause, &QAction::triggered, this, [toggle] { toggle(settings::kIsPlaying); });
  next.setText(tr("Next video"));
  next.setShortcut(QStringLiteral("Ctrl+N"));
  connect(&next, &QAction::triggered, this, std::move(nextVideo));
  openClose.setShortcut(QStringLiteral("Ctrl+D"));
  connect(&openClose, &QAction::triggered, this, [toggle] { toggle(settings::kIsOpenPlayer); });
  mute.setText(tr("Mute"));
  mute.setShortcut(QStringLiteral("Ctrl+M"));
  mute.setCheckable(true);
  connect(&mute, &QAction::toggled, this, [this](bool isOn) { want(settings::kMute, isOn); });
  startAtLogin.setText(tr("Start at login"));
  startAtLogin.setCheckable(true);
  connect(&startAtLogin, &QAction::toggled, this, [this](bool isOn) { want(settings::kAutolaunch, isOn); });
  addChoice(arrangements, tr("One picture across all monitors"), settings::kMonitorArrange);
  addChoice(arrangements, tr("The same picture on each"), settings::kMonitorArrange);
  addChoice(arrangements, tr("One monitor only"), settings::kMonitorArrange);
  addChoice(modes, tr("Repeat one video"), settings::kPlayMode);
  addChoice(modes, tr("Play the list"), settings::kPlayMode);
  addChoice(modes, tr("Shuffle"), settings::kPlayMode);
  connect(&settings_, &DesktopSettings::changed, this, [this] { follow(); });
  qApp->installEventFilter(this);
  follow();
}

bool DesktopActions::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
    follow();
  }
  return false;
}

void DesktopActions::addChoice(QActionGroup& group, const QString& text, const char* key) {
  auto* const action = group.addAction(text);
  action->setCheckable(true);
  const std::int64_t value = group.actions().size() - 1;
  connect(action, &QAction::toggled, this, [this, key, value](bool isOn) {
    if (isOn) {
      want(key, value);
    }
  });
}

void DesktopActions::playOnMonitor(int index) {
  constexpr std::int64_t kOneMonitor = 2;
  settings_.set(settings::kScreenIndex, std::int64_t{index});
  settings_.set(settings::kMonitorArrange, kOneMonitor);
}

void DesktopActions::follow() {
  const bool isOpen = settings_.value<bool>(settings::kIsOpenPlayer);
  const bool isPlaying = settings_.value<bool>(settings::kIsPlaying);
  const bool isMuted = settings_.value<bool>(settings::kMute);
  playPause.setText(isPlaying ? tr("Pause") : tr("Play"));
  playPause.setIcon(isPlaying ? themeIcon("media-playback-pause", QStyle::SP_MediaPause)
                              : themeIcon("media-playback-start", QStyle::SP_MediaPlay));
  playPause.setEnabled(isOpen);
  next.setIcon(themeIcon("media-skip-forward", QStyle::SP_MediaSkipForward));
  openClose.setText(isOpen ? tr("Close wallpaper") : tr("Open wallpaper"));
  mute.setChecked(isMuted);
  mute.setIcon(isMuted ? themeIcon("audio-volume-muted", QStyle::SP_MediaVolumeMuted)
                       : themeIcon("audio-volume-high", QStyle::SP_MediaVolume));
  startAtLogin.setChecked(settings_.value<bool>(settings::kAutolaunch));
  choose(arrangements, settings_.value<std::int64_t>(settings::kMonitorArrange));
  choose(modes, settings_.value<std::int64_t>(settings::kPlayMode));
}

}  // namespace quilex
