#include "companion/window/DesktopPanel.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>
#include <cmath>

#include "companion/Diagnosis.h"
#include "companion/Text.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

constexpr int kVolumeSteps = 100;
// Large enough for the drawing at any scale.
constexpr QSize kPictureSize(640, 360);

QLabel* heading(const QString& text) {
  auto* const label = new QLabel(text);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  return label;
}

// A button of the panel that is the same as the action of the menu.
template <typename Button>
Button* buttonFor(QAction& action) {
  auto* const button = new Button(action.text());
  const auto follow = [button, &action] {
    button->setChecked(action.isChecked());
    button->setEnabled(action.isEnabled());
  };
  follow();
  QObject::connect(&action, &QAction::changed, button, follow);
  // Assistive technology switches a button without clicking it.
  QObject::connect(button, &QAbstractButton::toggled, &action, [button, &action](bool isChecked) {
    if (isChecked || !button->autoExclusive()) {
      action.setChecked(isChecked);
    }
  });
  return button;
}

QToolButton* toolFor(QAction& action, Qt::ToolButtonStyle style) {
  auto* const button = new QToolButton;
  button->setToolButtonStyle(style);
  button->setDefaultAction(&action);
  button->setFocusPolicy(Qt::StrongFocus);
  const auto name = [button, &action] { button->setAccessibleName(action.text()); };
  name();
  QObject::connect(&action, &QAction::changed, button, name);
  return button;
}

QWidget* column(const QActionGroup& group, const QString& name) {
  auto* const box = new QWidget;
  box->setAccessibleName(name);
  auto* const lines = new QVBoxLayout(box);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(2);
  const auto actions = group.actions();
  for (QAction* const each : actions) {
    lines->addWidget(buttonFor<QRadioButton>(*each));
  }
  return box;
}

}  // namespace

std::vector<MonitorPlace> placesOf(const std::vector<DisplayStatus>& displays) {
  std::vector<MonitorPlace> places;
  for (const DisplayStatus& each : displays) {
    const QRectF frame(each.frame.x, each.frame.y, each.frame.width, each.frame.height);
    places.push_back({QString::fromStdString(each.name), frame, (frame.size() * each.scale).toSize()});
  }
  return places;
}

DesktopPanel::DesktopPanel(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      parts_(parts),
      picture_(parts.work),
      monitors_(new MonitorView),
      title_(new QLabel),
      volume_(new QSlider(Qt::Horizontal)),
      hint_(new QLabel) {
  DesktopActions& actions = parts_.actions;
  title_->setTextFormat(Qt::PlainText);
  title_->setWordWrap(true);
  title_->setAlignment(Qt::AlignCenter);
  hint_->setWordWrap(true);
  hint_->setForegroundRole(QPalette::PlaceholderText);
  volume_->setRange(0, kVolumeSteps);
  volume_->setPageStep(10);
  volume_->setAccessibleName(tr("Volume"));
  volume_->setToolTip(tr("Volume"));
  connect(volume_, &QSlider::valueChanged, this, [this](int step) {
    parts_.settings.set(settings::kVolume, static_cast<float>(step) / static_cast<float>(kVolumeSteps));
  });

  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(toolFor(actions.playPause, Qt::ToolButtonTextBesideIcon));
  buttons->addWidget(toolFor(actions.next, Qt::ToolButtonIconOnly));
  buttons->addStretch();
  buttons->addWidget(toolFor(actions.openClose, Qt::ToolButtonTextOnly));
  auto* const sound = new QHBoxLayout;
  sound->addWidget(toolFor(actions.mute, Qt::ToolButtonIconOnly));
  sound->addWidget(volume_, 1);

  auto* const lines = new QVBoxLayout(this);
  lines->addWidget(heading(tr("Desktop")));
  lines->addWidget(monitors_);
  lines->addWidget(title_);
  lines->addLayout(buttons);
  lines->addLayout(sound);
  lines->addSpacing(8);
  lines->addWidget(heading(tr("Arrangement")));
  lines->addWidget(column(actions.arrangements, tr("Arrangement")));
  lines->addSpacing(8);
  lines->addWidget(heading(tr("Playing order")));
  lines->addWidget(column(actions.modes, tr("Playing order")));
  lines->addSpacing(8);
  lines->addWidget(buttonFor<QCheckBox>(actions.startAtLogin));
  lines->addStretch();
  lines->addWidget(hint_);

  connect(monitors_, &MonitorView::chosen, &actions, &DesktopActions::playOnMonitor);
  connect(&parts_.settings, &DesktopSettings::changed, this, [this] { follow(); });
  connect(&parts_.agent, &AgentWatcher::changed, this, [this] { follow(); });
  connect(&parts_.model, &LibraryModel::layoutChanged, this, [this] { follow(); });
  connect(&parts_.model, &LibraryModel::dataChanged, this, [this] { follow(); });
  connect(&picture_, &CoverStore::loaded, this, [this] { follow(); });
  for (const auto signal : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved}) {
    connect(qGuiApp, signal, this, [this] { follow(); });
  }
  follow();
}

std::vector<MonitorPlace> DesktopPanel::monitors() const {
  auto places = placesOf(parts_.agent.status().displays);
  if (places.empty()) {
    const auto screens = QGuiApplication::screens();
    for (const QScreen* const each : screens) {
      const QRectF frame = each->geometry();
      places.push_back({each->name(), frame, (frame.size() * each->devicePixelRatio()).toSize()});
    }
  }
  return places;
}

void DesktopPanel::followVolume() {
  // A hand on the slider is stronger than other programs.
  if (!volume_->isSliderDown()) {
    const QSignalBlocker quiet(volume_);
    volume_->setValue(static_cast<int>(std::lround(parts_.settings.value<float>(settings::kVolume) * kVolumeSteps)));
  }
}

void DesktopPanel::follow() {
  using Arrangement = MonitorPicture::Arrangement;
  followVolume();
  const auto sign = parts_.settings.value<std::string>(settings::kCurrentVideoSign);
  const VideoCard* const card = parts_.model.find(sign);
  MonitorPicture shown;
  const auto arrangement = parts_.settings.value<std::int64_t>(settings::kMonitorArrange);
  shown.arrangement = arrangement == 0 ? Arrangement::across : arrangement == 1 ? Arrangement::each : Arrangement::one;
  shown.monitor = static_cast<int>(parts_.settings.value<std::int64_t>(settings::kScreenIndex));
  if (card != nullptr && parts_.model.shown().isOpen) {
    shown.picture = picture_.cover(card->video, kPictureSize);
  }
  monitors_->setMonitors(monitors());
  monitors_->setPicture(shown);
  title_->setText(card != nullptr ? card->title : tr("No video is chosen"));
  hint_->setText(hint());
}

QString DesktopPanel::hint() const {
  const AgentStatus& status = parts_.agent.status();
  const bool isMeantToMove =
      parts_.settings.value<bool>(settings::kIsOpenPlayer) && parts_.settings.value<bool>(settings::kIsPlaying);
  if (isMeantToMove && !status.standsStillBecause.empty()) {
    const QString reasons = QString::fromStdString(cleanText(joined(status.standsStillBecause)));
    return tr("The picture stands still because %1.").arg(reasons);
  }
  if (parts_.agent.state() == AgentWatcher::State::running && status.statusItem == "none") {
    return tr("This desktop has no status area for the wallpaper's menu. Everything in that menu can be done here.");
  }
  return {};
}

}  // namespace quilex
