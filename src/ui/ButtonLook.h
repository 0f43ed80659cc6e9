#pragma once

#include <memory>
#include <optional>

#include "platform/Color.h"
#include "platform/Image.h"

namespace quilex {

/// What is drawn behind image and title. Lengths are in logical pixels.
struct ButtonLayer {
  /// No value stands for transparent.
  std::optional<Color> backgroundColor;
  double cornerRadius = 0;
  bool masksToBounds = false;
  double borderWidth = 0;
  Color borderColor;

  bool operator==(const ButtonLayer&) const = default;
};

/// The look of a button with a hover background, as a plain model: a toolkit's button passes its events on and draws
/// the result. A colour stays until an event or a setter applies another one; a disabled button does not change. Main
/// thread.
class ButtonLook {
 public:
  using ImagePointer = std::shared_ptr<const Image>;
  using Layer = ButtonLayer;

  /// The desktop's colours for text backgrounds and labels.
  struct SystemColors {
    Color textBackground;
    Color label;
  };

  /// Size of the title's font in logical pixels.
  static constexpr double kTitleSize = 14.0;

  explicit ButtonLook(SystemColors colors) : system_(colors) {}

  // Properties that take effect with the next event

  ImagePointer hoverImage;
  ImagePointer normalImage;
  /// The background while the pointer is inside, and after a press.
  std::optional<Color> hoverColor;
  /// The background while the button is held down.
  std::optional<Color> pressedColor;
  /// Whether the button reacts to the pointer.
  bool isEnabled = true;

  // Properties that take effect at once, if there is a layer

  /// The background at rest; the system's text background until it is set.
  Color normalColor() const { return normal_.value_or(system_.textBackground); }
  void setNormalColor(Color color);
  /// The system's label colour until it is set. Setting it shows the background at rest, too.
  Color titleColor() const { return title_.value_or(system_.label); }
  void setTitleColor(Color color);
  bool isCustomBorder() const { return customBorder_; }
  /// Either value makes the layer and gives it a thin border for good.
  void setCustomBorder(bool custom);
  double cornerRadius() const { return radius_; }
  void setCornerRadius(double radius);

  // Events

  /// The properties are set and the button is about to appear: makes the layer.
  void awakeFromNib();
  void mouseEntered();
  void mouseExited();
  void mouseDown();
  /// The press is over, and its action is done.
  void mouseDownEnded();
  /// The desktop's colours changed.
  void setSystemColors(SystemColors colors);

  // What is shown

  /// Nothing until the button awakes or has a border.
  const std::optional<Layer>& layer() const { return shownLayer_; }
  /// The image that an event has put on the button; null leaves the button's own.
  const ImagePointer& image() const { return shownImage_; }

 private:
  void setBackground(const std::optional<Color>& color);

  SystemColors system_;
  std::optional<Color> normal_;
  std::optional<Color> title_;
  bool customBorder_ = false;
  double radius_ = 5.0;
  std::optional<Layer> shownLayer_;
  ImagePointer shownImage_;
};

}  // namespace quilex
