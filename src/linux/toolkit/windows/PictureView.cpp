#include "linux/toolkit/windows/PictureView.h"

#include <QPainter>

namespace quilex {

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  icon_.paint(&painter, rect());
}

}  // namespace quilex
