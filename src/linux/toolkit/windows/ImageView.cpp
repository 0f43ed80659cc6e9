#include "linux/toolkit/windows/ImageView.h"

#include <QPainter>

namespace quilex {

void ImageView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  image_.paint(&painter, rect());
}

}  // namespace quilex
