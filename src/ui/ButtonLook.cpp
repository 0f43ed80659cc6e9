#include "ui/ButtonLook.h"

namespace quilex {

namespace {

constexpr double kBorderWidth = 0.5;
constexpr Color kLightGray{170, 170, 170};

}  // namespace

void ButtonLook::setNormalColor(Color color) {
  normal_ = color;
  setBackground(normalColor());
}

void ButtonLook::setTitleColor(Color color) {
  title_ = color;
  setBackground(normalColor());
}

void ButtonLook::setCustomBorder(bool custom) {
  customBorder_ = custom;
  if (!shownLayer_) {
    shownLayer_.emplace();
  }
  shownLayer_->borderWidth = kBorderWidth;
  shownLayer_->borderColor = kLightGray;
}

void ButtonLook::setCornerRadius(double radius) {
  radius_ = radius;
  if (shownLayer_) {
    shownLayer_->cornerRadius = radius_;
    shownLayer_->masksToBounds = true;
  }
}

void ButtonLook::awakeFromNib() {
  if (!shownLayer_) {
    shownLayer_.emplace();
  }
  setCornerRadius(radius_);
  setBackground(normalColor());
}

void ButtonLook::mouseEntered() {
  if (!isEnabled) {
    return;
  }
  if (hoverImage) {
    shownImage_ = hoverImage;
  }
  if (hoverColor) {
    setBackground(hoverColor);
  }
}

void ButtonLook::mouseExited() {
  if (!isEnabled) {
    return;
  }
  if (normalImage) {
    shownImage_ = normalImage;
  }
  setBackground(normalColor());
}

void ButtonLook::mouseDown() {
  if (isEnabled && pressedColor) {
    setBackground(pressedColor);
  }
}

void ButtonLook::mouseDownEnded() {
  // As if the pointer were still inside. If it is not, `mouseExited` follows.
  if (isEnabled && hoverColor) {
    setBackground(hoverColor);
  }
}

void ButtonLook::setSystemColors(SystemColors colors) {
  const Color before = normalColor();
  system_ = colors;
  if (shownLayer_ && shownLayer_->backgroundColor == before) {
    setBackground(normalColor());
  }
}

void ButtonLook::setBackground(const std::optional<Color>& color) {
  if (shownLayer_) {
    shownLayer_->backgroundColor = color;
  }
}

}  // namespace quilex
