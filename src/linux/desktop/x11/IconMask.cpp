#include "linux/desktop/x11/IconMask.h"

#include <algorithm>
#include <cstdlib>

namespace quilex {

namespace {

// Programs that scale or dither a picture twice do not get exactly the same.
constexpr int kTolerance = 2;

}  // namespace

std::size_t IconMask::iconPixels() const {
  return static_cast<std::size_t>(std::ranges::count(icons_, true));
}

std::vector<PixelRect> IconMask::rectangles(int left, int top) const {
  std::vector<PixelRect> found;
  std::vector<PixelRect> band;
  std::size_t bandBegin = 0;
  for (int y = 0; y < size_.height; ++y) {
    band.clear();
    for (int x = 0; x < size_.width; ++x) {
      if (icons_[index(x, y)]) {
        const int begin = x;
        while (x < size_.width && icons_[index(x, y)]) {
          ++x;
        }
        band.push_back({left + begin, top + y, x - begin, 1});
      }
    }
    // A row like the one above makes that band higher.
    const std::span above = std::span(found).subspan(bandBegin);
    const bool continues = !band.empty() && std::ranges::equal(above, band, [](const auto& one, const auto& other) {
      return one.x == other.x && one.width == other.width && one.y + one.height == other.y;
    });
    if (continues) {
      std::ranges::for_each(above, [](PixelRect& each) { ++each.height; });
    } else {
      bandBegin = found.size();
      found.insert(found.end(), band.begin(), band.end());
    }
  }
  return found;
}

void MajorityPixel::vote(std::span<const std::uint32_t> pixels) {
  for (const std::uint32_t pixel : pixels) {
    if (votes_ == 0) {
      candidate_ = pixel;
    }
    votes_ += pixel == candidate_ ? 1U : std::size_t(-1);
  }
}

void MajorityPixel::count(std::span<const std::uint32_t> pixels) {
  counted_ += pixels.size();
  found_ += static_cast<std::size_t>(std::ranges::count(pixels, candidate_));
}

std::optional<std::uint32_t> MajorityPixel::winner() const {
  return found_ * 2 > counted_ ? std::optional(candidate_) : std::nullopt;
}

bool isSameColour(std::uint32_t one, std::uint32_t other) {
  const auto differs = [&](int shift) {
    const auto part = [shift](std::uint32_t pixel) { return static_cast<int>(pixel >> shift & 0xFF); };
    return std::abs(part(one) - part(other)) > kTolerance;
  };
  return !differs(0) && !differs(8) && !differs(16);
}

}  // namespace quilex
