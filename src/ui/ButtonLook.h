#pragma once

#include <memory>
#include <optional>

#include "platform/Color.h"
#include "platform/Image.h"

namespace quilex {

/// What is drawn beneath image and title; lengths in logical pixels.
struct ButtonLayer {
  /// None is transparent.
  std::optional<Color> backgroundColor;
  double cornerRadius = 0;
  bool masksToBounds = false;
  double borderWidth = 0;
  Color borderColor;

  bool operator==(const ButtonLayer&) const = default;
};

/// How a button with a hover background looks, as events and properties change it: a plain model, which a toolkit's
/// button tells its events and then draws. A colour shows from the event or setter that applies it until the next one
/// does; a disabled button keeps what it shows. Main thread.
class ButtonLook {
 public:
  using Picture = std::shared_ptr<const Image>;
  using Layer = ButtonLayer;

  /// The desktop's colours for the background of text and for labels.
  struct SystemColors {
    Color textBackground;
    Color label;
  };

  /// Size of the title's system font in logical pixels; the title is centred.
  static constexpr double kTitleSize = 14.0;

  explicit ButtonLook(SystemColors colors) : system_(colors) {}

  // Properties that take effect with the next event

  Picture hoverImage;
  Picture normalImage;
  /// Background while the pointer is inside, and after a press.
  std::optional<Color> hoverColor;
  /// Background while the button is held down.
  std::optional<Color> pressedColor;
  /// Whether the button answers to the pointer.
  bool isEnabled = true;

  // Properties that take effect at once, on a layer only where there is one

  /// The resting background; the system's text background until it is set.
  Color normalColor() const { return normal_.value_or(system_.textBackground); }
  void setNormalColor(Color color);
  /// Sets the resting background too. The system's label colour until it is set.
  Color titleColor() const { return title_.value_or(system_.label); }
  void setTitleColor(Color color);
  bool isCustomBorder() const { return customBorder_; }
  /// Any assignment makes the layer and gives it a thin border for good.
  void setCustomBorder(bool custom);
  double cornerRadius() const { return radius_; }
  void setCornerRadius(double newRadius);

  // Events

  /// All properties are set, and the button is about to be seen: makes the layer.
  void awakeFromNib();
  void mouseEntered();
  void mouseExited();
  void mouseDown();
  /// The press that `mouseDown` began is over, and its action done.
  void mouseDownEnded();
  /// The desktop's colours changed; what shows one of them changes with it.
  void setSystemColors(SystemColors colors);

  // What shows

  /// None until the button awakes or has a border.
  const std::optional<Layer>& layer() const { return shownLayer_; }
  /// The image that the last event put on the button; none leaves the button's own.
  const Picture& image() const { return shownImage_; }

 private:
  void setBackground(const std::optional<Color>& color);

  SystemColors system_;
  std::optional<Color> normal_;
  std::optional<Color> title_;
  bool customBorder_ = false;
  double radius_ = 5.0;
  std::optional<Layer> shownLayer_;
  Picture shownImage_;
};

}  // namespace quilex
