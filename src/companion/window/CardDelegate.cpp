#include "companion/window/CardDelegate.h"

#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QStringList>
#include <utility>

namespace quilex {

namespace {

constexpr int kGap = 4;
constexpr int kPillPadding = 6;
constexpr int kFrameWidth = 3;

QRect coverPlace(const QRect& card) {
  const int width = card.width() - 2 * CardDelegate::kMargin;
  return {card.left() + CardDelegate::kMargin, card.top() + CardDelegate::kMargin, width, width * 9 / 16};
}

QRect titlePlace(const QRect& cover, const QFontMetrics& metrics) {
  return {cover.left(), cover.bottom() + 1 + kGap, cover.width(), metrics.height()};
}

QColor mixed(const QColor& one, const QColor& other, double share) {
  const auto mix = [share](int left, int right) { return static_cast<int>(left + (right - left) * share); };
  return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

// A word on the cover, legible on any picture.
void paintPill(QPainter& painter, const QRect& cover, const QString& text, const QColor& background,
               const QColor& foreground) {
  const QFontMetrics metrics = painter.fontMetrics();
  const int most = cover.width() - 4 * kPillPadding;
  const QString shown = metrics.elidedText(text, Qt::ElideRight, most);
  QRect pill(0, 0, metrics.horizontalAdvance(shown) + 2 * kPillPadding, metrics.height() + kPillPadding);
  pill.moveBottomLeft(cover.bottomLeft() + QPoint(kPillPadding, -kPillPadding));
  painter.setPen(Qt::NoPen);
  painter.setBrush(background);
  painter.drawRoundedRect(pill, pill.height() / 2.0, pill.height() / 2.0);
  painter.setPen(foreground);
  painter.drawText(pill, Qt::AlignCenter, shown);
}

void paintPlaceholder(QPainter& painter, const QRect& cover, const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Base);
  const QColor ink = palette.color(QPalette::Text);
  painter.fillRect(cover, mixed(ground, ink, 0.12));
  const double size = cover.height() / 4.0;
  const QPointF centre = QRectF(cover).center();
  painter.setPen(Qt::NoPen);
  painter.setBrush(mixed(ground, ink, 0.35));
  painter.drawPolygon(
      QPolygonF{centre + QPointF(-size / 2, -size), centre + QPointF(size, 0), centre + QPointF(-size / 2, size)});
}

}  // namespace

CardDelegate::CardDelegate(CoverStore& covers, std::function<void(const VideoCard&)> seen, QObject* parent)
    : QStyledItemDelegate(parent), covers_(covers), seen_(std::move(seen)) {}

int CardDelegate::heightForWidth(int width, const QFontMetrics& metrics) {
  const QRect cover = coverPlace({0, 0, width, 0});
  return cover.bottom() + 1 + kGap + 2 * metrics.height() + kMargin;
}

void CardDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const auto& model = *static_cast<const LibraryModel*>(index.model());
  const VideoCard& card = model.card(index);
  seen_(card);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const bool isFocused = option.state.testFlag(QStyle::State_HasFocus);
  const QRect whole = option.rect.adjusted(2, 2, -2, -2);
  QColor ground = option.palette.color(QPalette::Highlight);
  if (isSelected || option.state.testFlag(QStyle::State_MouseOver)) {
    ground.setAlphaF(isSelected ? 1.0F : 0.15F);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ground);
    painter->drawRoundedRect(whole, 6, 6);
  }
  if (isFocused) {
    painter->setPen(QPen(option.palette.color(QPalette::Text), 1, Qt::DotLine));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(whole, 6, 6);
  }
  const QRect cover = coverPlace(option.rect);
  paintCover(*painter, option, model, card, cover);
  paintTexts(*painter, option, card, cover);
  painter->restore();
}

void CardDelegate::paintCover(QPainter& painter, const QStyleOptionViewItem& option, const LibraryModel& model,
                              const VideoCard& card, const QRect& place) const {
  const double scale = painter.device()->devicePixelRatioF();
  const bool isMissing = model.isMissing(card);
  const QPixmap picture = covers_.cover(card.video, QSizeF(QSizeF(place.size()) * scale).toSize());
  if (picture.isNull()) {
    paintPlaceholder(painter, place, option.palette);
  } else {
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(isMissing ? 0.35 : 1);
    painter.drawPixmap(place, picture);
    painter.setOpacity(1);
  }
  const QColor veil(0, 0, 0, 170);
  if (isMissing) {
    paintPill(painter, place, tr("File missing"), QColor(170, 30, 30), Qt::white);
  }
  if (!model.isCurrent(card)) {
    return;
  }
  painter.setPen(QPen(option.palette.color(QPalette::Highlight), kFrameWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(place);
  if (option.state.testFlag(QStyle::State_Selected)) {
    painter.setPen(QPen(option.palette.color(QPalette::HighlightedText), 1));
    painter.drawRect(place);
  }
  if (!isMissing) {
    const ShownVideo& shown = model.shown();
    const QString state = !shown.isOpen     ? tr("Chosen")
                          : shown.isPlaying ? QStringLiteral("▶ ") + tr("On the desktop")
                                            : tr("Paused");
    paintPill(painter, place, state, veil, Qt::white);
  }
}

void CardDelegate::paintTexts(QPainter& painter, const QStyleOptionViewItem& option, const VideoCard& card,
                              const QRect& cover) const {
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const QFontMetrics metrics(option.font);
  const QRect title = titlePlace(cover, metrics);
  painter.setFont(option.font);
  painter.setPen(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
  painter.drawText(title, Qt::AlignVCenter | Qt::AlignLeft,
                   metrics.elidedText(card.title, Qt::ElideRight, title.width()));
  QStringList facts{durationText(card.video.time), sizeText(card.video)};
  facts.removeAll(QString());
  if (!isSelected) {
    painter.setPen(mixed(option.palette.color(QPalette::Text), option.palette.color(QPalette::Base), 0.3));
  }
  const QRect below = title.translated(0, metrics.height());
  const QString line = facts.join(QStringLiteral("  ·  "));
  painter.drawText(below, Qt::AlignVCenter | Qt::AlignLeft, metrics.elidedText(line, Qt::ElideRight, below.width()));
}

QSize CardDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
  return qobject_cast<const QListView*>(option.widget)->gridSize();
}

QWidget* CardDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& /*index*/) const {
  auto* const editor = new QLineEdit(parent);
  editor->setAccessibleName(tr("Title"));
  return editor;
}

void CardDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& /*index*/) const {
  const QRect title = titlePlace(coverPlace(option.rect), QFontMetrics(option.font));
  QRect place(title.left(), 0, title.width(), editor->sizeHint().height());
  place.moveCenter(title.center());
  editor->setGeometry(place);
}

}  // namespace quilex
