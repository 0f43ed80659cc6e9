#include "linux/toolkit/windows/PictureView.h"

#include <QPainter>

namespace quilex {

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  icon.paint(&painter, rect());
}

}  // namespace quilex
