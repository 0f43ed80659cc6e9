#include "companion/window/DesktopActions.h"

#include <QApplication>
#include <QStyle>
#include <utility>

#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

QIcon themeIcon(const char* name, QStyle::StandardPixmap fallback) {
  return QIcon::fromTheme(QLatin1String(name), QApplication::style()->standardIcon(fallback));
}

void choose(const QActionGroup& group, std::int64_t value) {
  const auto actions = group.actions();
  if (value >= 0 && value < actions.size()) {
    actions[static_cast<qsizetype>(value)]->setChecked(true);
  }
}

}  // namespace

DesktopActions::DesktopActions(DesktopSettings& settings, std::function<void()> nextVideo)
    : arrangements(this), modes(this), settings_(settings) {
  const auto toggle = [this](const char* key) { settings_.set(key, !settings_.value<bool>(key)); };
  playPause.setShortcut(QStringLiteral("Ctrl+P"));
  connect(&playPause, &QAction::triggered, this, [toggle] { toggle(settings::kIsPlaying); });
  next.setText(tr("Next video"));
  next.setIcon(themeIcon("media-skip-forward", QStyle::SP_MediaSkipForward));
  next.setShortcut(QStringLiteral("Ctrl+N"));
  connect(&next, &QAction::triggered, this, std::move(nextVideo));
  openClose.setShortcut(QStringLiteral("Ctrl+D"));
  connect(&openClose, &QAction::triggered, this, [toggle] { toggle(settings::kIsOpenPlayer); });
  mute.setText(tr("Mute"));
  mute.setShortcut(QStringLiteral("Ctrl+M"));
  mute.setCheckable(true);
  connect(&mute, &QAction::triggered, this, [toggle] { toggle(settings::kMute); });
  startAtLogin.setText(tr("Start at login"));
  startAtLogin.setCheckable(true);
  connect(&startAtLogin, &QAction::triggered, this, [toggle] { toggle(settings::kAutolaunch); });
  addChoice(arrangements, tr("One picture across all monitors"), settings::kMonitorArrange);
  addChoice(arrangements, tr("The same picture on each"), settings::kMonitorArrange);
  addChoice(arrangements, tr("One monitor only"), settings::kMonitorArrange);
  addChoice(modes, tr("Repeat one video"), settings::kPlayMode);
  addChoice(modes, tr("Play the list"), settings::kPlayMode);
  addChoice(modes, tr("Shuffle"), settings::kPlayMode);
  connect(&settings_, &DesktopSettings::changed, this, [this] { follow(); });
  follow();
}

void DesktopActions::addChoice(QActionGroup& group, const QString& text, const char* key) {
  auto* const action = group.addAction(text);
  action->setCheckable(true);
  const std::int64_t value = group.actions().size() - 1;
  connect(action, &QAction::triggered, this, [this, key, value] { settings_.set(key, value); });
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
  openClose.setText(isOpen ? tr("Close wallpaper") : tr("Open wallpaper"));
  openClose.setIcon(themeIcon("video-display", QStyle::SP_DesktopIcon));
  mute.setChecked(isMuted);
  mute.setIcon(isMuted ? themeIcon("audio-volume-muted", QStyle::SP_MediaVolumeMuted)
                       : themeIcon("audio-volume-high", QStyle::SP_MediaVolume));
  startAtLogin.setChecked(settings_.value<bool>(settings::kAutolaunch));
  choose(arrangements, settings_.value<std::int64_t>(settings::kMonitorArrange));
  choose(modes, settings_.value<std::int64_t>(settings::kPlayMode));
}

}  // namespace quilex
