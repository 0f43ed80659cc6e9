#pragma once

#include <QPixmap>
#include <QRectF>
#include <QWidget>
#include <string>
#include <vector>

class QAbstractButton;

namespace quilex {

struct MonitorPlace {
  QString name;
  /// In units that are the same for all monitors.
  QRectF frame;
  /// In pixels of the monitor.
  QSize pixels;
  bool operator==(const MonitorPlace&) const = default;
};

/// How the picture lies on the monitors.
struct MonitorPicture {
  enum class Arrangement { across, each, one };
  Arrangement arrangement = Arrangement::across;
  /// The monitor with the picture, if it is one.
  int monitor = 0;
  /// Null for none.
  QPixmap picture;
};

/// The part of a picture of the size `picture` that lies on the monitor `index`, by the rule that a picture fills its
/// rectangle and is cut; empty for none.
QRectF partOnMonitor(const std::vector<MonitorPlace>& monitors, std::size_t index, const MonitorPicture& how,
                     QSizeF picture);

/// The monitors to scale, with the picture on them. Each is a button.
class MonitorView : public QWidget {
  Q_OBJECT

 public:
  explicit MonitorView(QWidget* parent = nullptr);

  void setMonitors(const std::vector<MonitorPlace>& monitors);
  void setPicture(const MonitorPicture& picture);
  const std::vector<MonitorPlace>& monitors() const { return monitors_; }
  QSize sizeHint() const override { return {240, 120}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

 signals:
  void chosen(int monitor);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  class MonitorButton;

  QRectF bounds() const;
  void place();

  std::vector<MonitorPlace> monitors_;
  MonitorPicture picture_;
  std::vector<MonitorButton*> buttons_;
};

}  // namespace quilex
