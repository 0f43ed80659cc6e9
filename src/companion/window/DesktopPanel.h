#pragma once

#include <QWidget>
#include <vector>

#include "companion/window/AgentWatcher.h"
#include "companion/window/CoverStore.h"
#include "companion/window/DesktopActions.h"
#include "companion/window/LibraryModel.h"
#include "companion/window/MonitorView.h"

class QLabel;
class QSlider;

namespace quilex {

/// The desktop at a glance: its monitors, what plays on them, and how. Main thread.
class DesktopPanel : public QWidget {
  Q_OBJECT

 public:
  struct Parts {
    DesktopSettings& settings;
    DesktopActions& actions;
    AgentWatcher& agent;
    LibraryModel& model;
    BackgroundWork& work;
  };

  /// All parts must outlive the panel.
  DesktopPanel(const Parts& parts, QWidget* parent);

  QSize sizeHint() const override { return {270, 500}; }

 private:
  void follow();
  void followVolume();
  /// What a person may wonder about.
  QString hint() const;
  std::vector<MonitorPlace> monitors() const;

  Parts parts_;
  CoverStore picture_;
  MonitorView* monitors_;
  QLabel* title_;
  QSlider* volume_;
  QLabel* hint_;
};

/// The monitors as the agent counts them.
std::vector<MonitorPlace> placesOf(const std::vector<DisplayStatus>& displays);

}  // namespace quilex
