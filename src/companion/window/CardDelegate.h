#pragma once

#include <QStyledItemDelegate>
#include <functional>

#include "companion/window/CoverStore.h"
#include "companion/window/LibraryModel.h"

namespace quilex {

/// Draws the cards of a LibraryModel, and edits their titles in place.
class CardDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  static constexpr int kMargin = 8;

  /// `covers` must outlive the delegate. `seen` is called for each card that is drawn.
  CardDelegate(CoverStore& covers, std::function<void(const VideoCard&)> seen, QObject* parent);

  /// The height of a card of that width, margins included.
  static int heightForWidth(int width, const QFontMetrics& metrics);

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;

 private:
  void paintCover(QPainter& painter, const QStyleOptionViewItem& option, const LibraryModel& model,
                  const VideoCard& card, const QRect& place) const;
  void paintTexts(QPainter& painter, const QStyleOptionViewItem& option, const VideoCard& card,
                  const QRect& cover) const;

  CoverStore& covers_;
  std::function<void(const VideoCard&)> seen_;
};

}  // namespace quilex
