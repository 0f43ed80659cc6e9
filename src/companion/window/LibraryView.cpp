#include "companion/window/LibraryView.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QUrl>
#include <QWheelEvent>
#include <algorithm>

#include "companion/window/CardDelegate.h"

namespace quilex {

namespace {

constexpr int kCoverStep = 20;

}  // namespace

LibraryView::LibraryView(QWidget* parent) : QListView(parent) {
  setFlow(LeftToRight);
  setWrapping(true);
  setResizeMode(Adjust);
  setUniformItemSizes(true);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setVerticalScrollMode(ScrollPerPixel);
  // Otherwise the columns would change with the number of rows.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  setMouseTracking(true);
  setAcceptDrops(true);
  setAccessibleName(tr("Videos"));
}

void LibraryView::setCoverWidth(int width) {
  coverWidth_ = std::clamp(width, kSmallestCover, kLargestCover);
  layOutGrid();
}

void LibraryView::setEmptyText(const QString& heading, const QString& text) {
  if (heading != heading_ || text != text_) {
    heading_ = heading;
    text_ = text;
    setAccessibleDescription(heading + QStringLiteral("\n") + text);
    viewport()->update();
  }
}

QStringList LibraryView::localFiles(const QMimeData* data) {
  QStringList files;
  const QList<QUrl> addresses = data != nullptr ? data->urls() : QList<QUrl>();
  for (const QUrl& address : addresses) {
    if (address.isLocalFile()) {
      files << address.toLocalFile();
    }
  }
  return files;
}

void LibraryView::layOutGrid() {
  const int width = viewport()->width() - 1;
  const int columns = std::max(1, width / (coverWidth_ + 2 * CardDelegate::kMargin));
  const int cell = std::max(width / columns, 2 * CardDelegate::kMargin + 16);
  const QSize grid(cell, CardDelegate::heightForWidth(cell, fontMetrics()));
  if (grid != gridSize()) {
    // The row at the top stays there.
    const QModelIndex first = indexAt(QPoint(cell / 2, 2 * CardDelegate::kMargin));
    setGridSize(grid);
    verticalScrollBar()->setSingleStep(grid.height() / 3);
    if (first.isValid() && first.row() > 0) {
      scrollTo(first, PositionAtTop);
    }
  }
}

void LibraryView::resizeEvent(QResizeEvent* event) {
  layOutGrid();
  QListView::resizeEvent(event);
}

void LibraryView::changeEvent(QEvent* event) {
  QListView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    layOutGrid();
  }
}

void LibraryView::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) {
    QListView::wheelEvent(event);
    return;
  }
  const int turned = event->angleDelta().y();
  if (turned != 0) {
    emit coverWidthRequested(coverWidth_ + (turned > 0 ? kCoverStep : -kCoverStep));
  }
  event->accept();
}

void LibraryView::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  QPainter painter(viewport());
  if (model() != nullptr && model()->rowCount() == 0) {
    const QRect whole = viewport()->rect().adjusted(24, 24, -24, -24);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    QRect upper = whole;
    upper.setBottom(whole.center().y());
    painter.setPen(palette().color(QPalette::Text));
    painter.setFont(large);
    painter.drawText(upper.adjusted(0, 0, 0, -6), Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWordWrap, heading_);
    QRect lower = whole;
    lower.setTop(whole.center().y());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.setFont(font());
    painter.drawText(lower.adjusted(0, 6, 0, 0), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text_);
  }
  if (isDropTarget_) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 3, Qt::DashLine));
    painter.drawRect(viewport()->rect().adjusted(3, 3, -3, -3));
  }
}

void LibraryView::showDropTarget(bool shown) {
  isDropTarget_ = shown;
  viewport()->update();
}

void LibraryView::dragEnterEvent(QDragEnterEvent* event) {
  if (!localFiles(event->mimeData()).isEmpty()) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    showDropTarget(true);
  }
}

void LibraryView::dragMoveEvent(QDragMoveEvent* event) {
  // Files are never moved: they stay where they are.
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void LibraryView::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
  showDropTarget(false);
}

void LibraryView::dropEvent(QDropEvent* event) {
  showDropTarget(false);
  event->setDropAction(Qt::CopyAction);
  event->accept();
  emit filesDropped(localFiles(event->mimeData()));
}

void LibraryView::keyboardSearch(const QString& text) {
  emit typed(text);
}

}  // namespace quilex
