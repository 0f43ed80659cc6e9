#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "linux/render/Pixels.h"

namespace quilex {

/// Which pixels of a desktop's window are icons, and which are its background.
class IconMask {
 public:
  IconMask() = default;
  explicit IconMask(PixelSize size)
      : size_(size), icons_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)) {}

  PixelSize size() const { return size_; }
  /// Marks a pixel within the size.
  void set(int x, int y, bool isIcon) { icons_[index(x, y)] = isIcon; }
  std::size_t iconPixels() const;
  /// True if so much is taken for icons that the background must be another one.
  bool isImplausible() const { return iconPixels() * 2 > icons_.size(); }

  /// The icons' pixels as rectangles that do not overlap, moved by `left` and `top`. They are in bands from top to
  /// bottom and from left to right in each, as the X protocol's YXBanded order asks.
  std::vector<PixelRect> rectangles(int left, int top) const;

 private:
  std::size_t index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(size_.width) + static_cast<std::size_t>(x);
  }

  PixelSize size_;
  std::vector<bool> icons_;
};

/// Finds the value that more than half of all pixels have, if there is one (Boyer and Moore's majority vote). Pixels
/// are given in the same order twice: first all to `vote`, then all to `count`.
class MajorityPixel {
 public:
  void vote(std::span<const std::uint32_t> pixels);
  void count(std::span<const std::uint32_t> pixels);
  std::optional<std::uint32_t> winner() const;

 private:
  std::uint32_t candidate_ = 0;
  std::size_t votes_ = 0;
  std::size_t found_ = 0;
  std::size_t counted_ = 0;
};

/// True if a person sees two colours as the same; pixels have the bytes blue, green, red, and one that does not count.
bool isSameColour(std::uint32_t one, std::uint32_t other);

}  // namespace quilex
