#include "companion/window/MonitorView.h"

#include <QAbstractButton>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <algorithm>

namespace quilex {

namespace {

constexpr int kLargestHeight = 170;
constexpr double kGapOfMonitors = 2;

QRectF boundsOf(const std::vector<MonitorPlace>& monitors) {
  QRectF all;
  for (const MonitorPlace& each : monitors) {
    all = all.united(each.frame);
  }
  return all;
}

}  // namespace

QRectF partOnMonitor(const std::vector<MonitorPlace>& monitors, std::size_t index, const MonitorPicture& how,
                     QSizeF picture) {
  using Arrangement = MonitorPicture::Arrangement;
  if (picture.isEmpty() || index >= monitors.size()) {
    return {};
  }
  // A monitor that does not exist means the first.
  const int last = static_cast<int>(monitors.size()) - 1;
  const int only = how.monitor > last ? 0 : how.monitor;
  if (how.arrangement == Arrangement::one && static_cast<int>(index) != only) {
    return {};
  }
  const QRectF frame = monitors[index].frame;
  const QRectF whole = how.arrangement == Arrangement::across ? boundsOf(monitors) : frame;
  const double scale = std::max(whole.width() / picture.width(), whole.height() / picture.height());
  const QPointF cut((picture.width() * scale - whole.width()) / 2, (picture.height() * scale - whole.height()) / 2);
  const QPointF corner = frame.topLeft() - whole.topLeft() + cut;
  return {corner / scale, frame.size() / scale};
}

class MonitorView::MonitorButton : public QAbstractButton {
 public:
  MonitorButton(MonitorView& view, std::size_t index) : QAbstractButton(&view), view_(view), index_(index) {
    setCursor(Qt::PointingHandCursor);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QPixmap& picture = view_.picture_.picture;
    const QRectF part = partOnMonitor(view_.monitors_, index_, view_.picture_, picture.size());
    painter.fillRect(rect(), QColor(28, 28, 32));
    if (!part.isEmpty()) {
      painter.drawPixmap(QRectF(rect()), picture, part);
    }
    const bool isPointedAt = underMouse() || hasFocus();
    painter.setPen(QPen(palette().color(isPointedAt ? QPalette::Highlight : QPalette::Mid), isPointedAt ? 4 : 2));
    painter.drawRect(rect());
    const QString number = QString::number(index_ + 1);
    QRect circle(6, 6, fontMetrics().height() + 4, fontMetrics().height() + 4);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 170));
    painter.drawEllipse(circle);
    painter.setPen(Qt::white);
    painter.drawText(circle, Qt::AlignCenter, number);
  }
  void enterEvent(QEnterEvent* event) override {
    QAbstractButton::enterEvent(event);
    update();
  }
  void leaveEvent(QEvent* event) override {
    QAbstractButton::leaveEvent(event);
    update();
  }

 private:
  MonitorView& view_;
  std::size_t index_;
};

MonitorView::MonitorView(QWidget* parent) : QWidget(parent) {
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  setAccessibleName(tr("Monitors"));
}

void MonitorView::setMonitors(const std::vector<MonitorPlace>& monitors) {
  if (monitors == monitors_) {
    return;
  }
  monitors_ = monitors;
  while (buttons_.size() > monitors_.size()) {
    delete buttons_.back();
    buttons_.pop_back();
  }
  while (buttons_.size() < monitors_.size()) {
    const int index = static_cast<int>(buttons_.size());
    buttons_.push_back(new MonitorButton(*this, buttons_.size()));
    connect(buttons_.back(), &QAbstractButton::clicked, this, [this, index] { emit chosen(index); });
  }
  for (std::size_t index = 0; index < buttons_.size(); ++index) {
    const MonitorPlace& monitor = monitors_[index];
    const QString size =
        QString::number(monitor.pixels.width()) + QStringLiteral(" × ") + QString::number(monitor.pixels.height());
    const QString name = tr("Monitor %1: %2, %3").arg(QString::number(index + 1), monitor.name, size);
    buttons_[index]->setAccessibleName(name);
    buttons_[index]->setToolTip(name + QStringLiteral("\n") + tr("Click to play on this monitor only"));
    buttons_[index]->show();
  }
  updateGeometry();
  place();
}

void MonitorView::setPicture(const MonitorPicture& picture) {
  picture_ = picture;
  for (MonitorButton* const each : buttons_) {
    each->update();
  }
}

QRectF MonitorView::bounds() const {
  return boundsOf(monitors_);
}

int MonitorView::heightForWidth(int width) const {
  const QRectF all = bounds();
  const double height = all.isEmpty() ? 0 : width * all.height() / all.width();
  return std::clamp(static_cast<int>(height), 60, kLargestHeight);
}

void MonitorView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  place();
}

void MonitorView::place() {
  const QRectF all = bounds();
  if (all.isEmpty()) {
    return;
  }
  const double scale = std::min(width() / all.width(), height() / all.height());
  const QPointF corner((width() - all.width() * scale) / 2, (height() - all.height() * scale) / 2);
  for (std::size_t index = 0; index < buttons_.size(); ++index) {
    const QRectF frame = monitors_[index].frame;
    const QRectF shown((frame.topLeft() - all.topLeft()) * scale + corner, frame.size() * scale);
    buttons_[index]->setGeometry(
        shown.adjusted(kGapOfMonitors, kGapOfMonitors, -kGapOfMonitors, -kGapOfMonitors).toRect());
  }
}

}  // namespace quilex
