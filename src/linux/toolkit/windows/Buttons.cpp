#include "linux/toolkit/windows/Buttons.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <algorithm>
#include <memory>
#include <utility>

namespace quilex {

namespace {

constexpr int kSidePadding = 22;
constexpr int kTopPadding = 9;
constexpr int kImageGap = 8;
constexpr double kFocusInset = 3;
constexpr double kFocusWidth = 1.5;
constexpr double kDisabledOpacity = 0.5;

struct IconImage : Image {
  explicit IconImage(QIcon qtIcon) : icon(std::move(qtIcon)) {}
  const QIcon icon;
};

ButtonLook::ImagePointer imageOf(const QIcon& icon) {
  return icon.isNull() ? nullptr : std::make_shared<const IconImage>(icon);
}

QIcon iconOf(const ButtonLook::ImagePointer& image) {
  const auto* own = dynamic_cast<const IconImage*>(image.get());
  return own == nullptr ? QIcon() : own->icon;
}

Color fromQt(const QColor& color) {
  const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
  return {byte(color.red()), byte(color.green()), byte(color.blue()), byte(color.alpha())};
}

QColor toQt(const Color& color) {
  return {color.red, color.green, color.blue, color.alpha};
}

std::optional<Color> optionalFromQt(const QColor& color) {
  return color.isValid() ? std::optional(fromQt(color)) : std::nullopt;
}

QColor optionalToQt(const std::optional<Color>& color) {
  return color ? toQt(*color) : QColor();
}

ButtonLook::SystemColors systemColors(const QPalette& palette) {
  return {fromQt(palette.color(QPalette::Active, QPalette::Base)),
          fromQt(palette.color(QPalette::Active, QPalette::WindowText))};
}

bool isPressKey(const QKeyEvent& event) {
  return !event.isAutoRepeat() && (event.key() == Qt::Key_Space || event.key() == Qt::Key_Select);
}

}  // namespace

ButtonWithPointCursor::ButtonWithPointCursor(QWidget* parent) : QPushButton(parent) {
  setCursor(Qt::PointingHandCursor);
}

ButtonWithHoverBackGround::ButtonWithHoverBackGround(QWidget* parent)
    : ButtonWithPointCursor(parent), look_(systemColors(palette())) {
  // In points, so that the title grows with the text size that the user has chosen.
  QFont titleFont = font();
  titleFont.setPointSizeF(ButtonLook::kTitleSize * 72 / 96);
  setFont(titleFont);
  setAttribute(Qt::WA_Hover);
}

// Properties

QIcon ButtonWithHoverBackGround::hoverImage() const {
  return iconOf(look_.hoverImage);
}

void ButtonWithHoverBackGround::setHoverImage(const QIcon& image) {
  look_.hoverImage = imageOf(image);
}

QIcon ButtonWithHoverBackGround::normalImage() const {
  return iconOf(look_.normalImage);
}

void ButtonWithHoverBackGround::setNormalImage(const QIcon& image) {
  look_.normalImage = imageOf(image);
}

QColor ButtonWithHoverBackGround::hoverColor() const {
  return optionalToQt(look_.hoverColor);
}

void ButtonWithHoverBackGround::setHoverColor(const QColor& color) {
  look_.hoverColor = optionalFromQt(color);
}

QColor ButtonWithHoverBackGround::normalColor() const {
  return toQt(look_.normalColor());
}

void ButtonWithHoverBackGround::setNormalColor(const QColor& color) {
  look_.setNormalColor(fromQt(color));
  showLook();
}

QColor ButtonWithHoverBackGround::pressedColor() const {
  return optionalToQt(look_.pressedColor);
}

void ButtonWithHoverBackGround::setPressedColor(const QColor& color) {
  look_.pressedColor = optionalFromQt(color);
}

QColor ButtonWithHoverBackGround::titleColor() const {
  return toQt(look_.titleColor());
}

void ButtonWithHoverBackGround::setTitleColor(const QColor& color) {
  look_.setTitleColor(fromQt(color));
  showLook();
}

bool ButtonWithHoverBackGround::isCustomBorder() const {
  return look_.isCustomBorder();
}

void ButtonWithHoverBackGround::setCustomBorder(bool custom) {
  look_.setCustomBorder(custom);
  showLook();
}

double ButtonWithHoverBackGround::cornerRadius() const {
  return look_.cornerRadius();
}

void ButtonWithHoverBackGround::setCornerRadius(double radius) {
  look_.setCornerRadius(radius);
  showLook();
}

// Events

bool ButtonWithHoverBackGround::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
      // The pointer can enter only while the agent has the keyboard, and not during a press, whose end says where it
      // is.
      if (!held_ && (inside_ || QGuiApplication::applicationState() == Qt::ApplicationActive)) {
        setInside(trackingArea_.contains(static_cast<QHoverEvent*>(event)->position().toPoint()));
      }
      break;
    case QEvent::HoverLeave:
      if (!held_) {
        setInside(false);
      }
      break;
    default:
      break;
  }
  return ButtonWithPointCursor::event(event);
}

void ButtonWithHoverBackGround::changeEvent(QEvent* event) {
  ButtonWithPointCursor::changeEvent(event);
  look_.isEnabled = isEnabled();
  if (event->type() == QEvent::PaletteChange) {
    look_.setSystemColors(systemColors(palette()));
    showLook();
  }
}

void ButtonWithHoverBackGround::showEvent(QShowEvent* event) {
  ButtonWithPointCursor::showEvent(event);
  if (trackingArea_.isNull()) {
    trackingArea_ = rect();
    look_.awakeFromNib();
  }
}

void ButtonWithHoverBackGround::hideEvent(QHideEvent* event) {
  ButtonWithPointCursor::hideEvent(event);
  // Nothing reports where the pointer goes while the button is hidden.
  held_ = false;
  setInside(false);
}

void ButtonWithHoverBackGround::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && hitButton(event->position().toPoint())) {
    held_ = true;
    look_.mouseDown();
    showLook();
  }
  ButtonWithPointCursor::mousePressEvent(event);
}

void ButtonWithHoverBackGround::mouseReleaseEvent(QMouseEvent* event) {
  const QPointer<QWidget> self = this;
  ButtonWithPointCursor::mouseReleaseEvent(event);
  if (self && event->button() == Qt::LeftButton) {
    endPress(trackingArea_.contains(event->position().toPoint()));
  }
}

void ButtonWithHoverBackGround::keyPressEvent(QKeyEvent* event) {
  if (isPressKey(*event)) {
    held_ = true;
    look_.mouseDown();
    showLook();
  }
  ButtonWithPointCursor::keyPressEvent(event);
}

void ButtonWithHoverBackGround::keyReleaseEvent(QKeyEvent* event) {
  const QPointer<QWidget> self = this;
  ButtonWithPointCursor::keyReleaseEvent(event);
  if (self && isPressKey(*event)) {
    endPress(inside_);
  }
}

void ButtonWithHoverBackGround::endPress(bool pointerInside) {
  if (std::exchange(held_, false)) {
    look_.mouseDownEnded();
    inside_ = true;
    setInside(pointerInside);
    showLook();
  }
}

void ButtonWithHoverBackGround::setInside(bool nowInside) {
  if (std::exchange(inside_, nowInside) != nowInside) {
    nowInside ? look_.mouseEntered() : look_.mouseExited();
    showLook();
  }
}

// Drawing

void ButtonWithHoverBackGround::showLook() {
  if (const QIcon image = iconOf(look_.image()); !image.isNull()) {
    setIcon(image);
  }
  update();
}

QSize ButtonWithHoverBackGround::sizeHint() const {
  ensurePolished();
  QSize size = fontMetrics().size(Qt::TextShowMnemonic, text());
  if (!icon().isNull()) {
    size.rwidth() += iconSize().width() + (text().isEmpty() ? 0 : kImageGap);
    size.rheight() = std::max(size.height(), iconSize().height());
  }
  return size + QSize(2 * kSidePadding, 2 * kTopPadding);
}

QSize ButtonWithHoverBackGround::minimumSizeHint() const {
  return sizeHint();
}

void ButtonWithHoverBackGround::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF bounds = rect();
  double radius = 0;
  if (const auto& layer = look_.layer()) {
    radius = std::min({layer->cornerRadius, bounds.width() / 2, bounds.height() / 2});
    QPainterPath outline;
    outline.addRoundedRect(bounds, radius, radius);
    if (layer->backgroundColor) {
      painter.fillPath(outline, toQt(*layer->backgroundColor));
    }
    if (layer->borderWidth > 0) {
      const double half = layer->borderWidth / 2;
      painter.setPen(QPen(toQt(layer->borderColor), layer->borderWidth));
      painter.drawRoundedRect(bounds.adjusted(half, half, -half, -half), radius, radius);
    }
    if (layer->masksToBounds) {
      painter.setClipPath(outline);
    }
  }
  painter.setOpacity(isEnabled() ? 1 : kDisabledOpacity);
  painter.setPen(titleColor());
  QRect place = rect();
  if (!icon().isNull()) {
    const int titleWidth = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
    const int width = iconSize().width() + (titleWidth == 0 ? 0 : kImageGap + titleWidth);
    const QRect image((place.width() - width) / 2, 0, iconSize().width(), place.height());
    icon().paint(&painter, image);
    place.setLeft(image.right() + 1 + kImageGap);
    place.setWidth(titleWidth);
  }
  painter.drawText(place, static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextShowMnemonic), text());
  if (hasFocus()) {
    // In the title's colour, which stands out from every background.
    const double inner = std::max(radius - kFocusInset, 0.0);
    painter.setPen(QPen(titleColor(), kFocusWidth));
    painter.drawRoundedRect(bounds.adjusted(kFocusInset, kFocusInset, -kFocusInset, -kFocusInset), inner, inner);
  }
}

}  // namespace quilex
