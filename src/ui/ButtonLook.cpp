#include "ui/ButtonLook.h"

namespace quilex {

namespace {

constexpr double kBorderWidth = 0.5;
constexpr Color kLightGray{170, 170, 170};

}  // namespace

void ButtonLook::setNormalColor(Color color) {
  normal = color;
  setBackground(normalColor());
}

void ButtonLook::setTitleColor(Color color) {
  title = color;
  setBackground(normalColor());
}

void ButtonLook::setCustomBorder(bool custom) {
  customBorder = custom;
  if (!shownLayer) {
    shownLayer.emplace();
  }
  shownLayer->borderWidth = kBorderWidth;
  shownLayer->borderColor = kLightGray;
}

void ButtonLook::setCornerRadius(double newRadius) {
  radius = newRadius;
  if (shownLayer) {
    shownLayer->cornerRadius = radius;
    shownLayer->masksToBounds = true;
  }
}

void ButtonLook::awakeFromNib() {
  if (!shownLayer) {
    shownLayer.emplace();
  }
  setCornerRadius(radius);
  setBackground(normalColor());
}

void ButtonLook::mouseEntered() {
  if (!isEnabled) {
    return;
  }
  if (hoverImage) {
    shownImage = hoverImage;
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
    shownImage = normalImage;
  }
  setBackground(normalColor());
}

void ButtonLook::mouseDown() {
  if (isEnabled && pressedColor) {
    setBackground(pressedColor);
  }
}

void ButtonLook::mouseDownEnded() {
  // The pointer is taken to be inside still; if it is not, it is about to leave.
  if (isEnabled && hoverColor) {
    setBackground(hoverColor);
  }
}

void ButtonLook::setSystemColors(SystemColors colors) {
  const Color before = normalColor();
  system = colors;
  if (shownLayer && shownLayer->backgroundColor == before) {
    setBackground(normalColor());
  }
}

void ButtonLook::setBackground(const std::optional<Color>& color) {
  if (shownLayer) {
    shownLayer->backgroundColor = color;
  }
}

}  // namespace quilex
