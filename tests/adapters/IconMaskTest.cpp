#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "linux/desktop/x11/IconMask.h"

namespace quilex {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Each text is a row; "#" stands for a pixel of an icon.
IconMask drawn(const std::vector<std::string>& rows) {
  IconMask mask({static_cast<int>(rows.front().size()), static_cast<int>(rows.size())});
  for (std::size_t y = 0; y < rows.size(); ++y) {
    for (std::size_t x = 0; x < rows[y].size(); ++x) {
      mask.set(static_cast<int>(x), static_cast<int>(y), rows[y][x] == '#');
    }
  }
  return mask;
}

std::optional<std::uint32_t> majority(const std::vector<std::uint32_t>& one, const std::vector<std::uint32_t>& other) {
  MajorityPixel most;
  most.vote(one);
  most.vote(other);
  most.count(one);
  most.count(other);
  return most.winner();
}

}  // namespace

TEST(IconMaskTest, RectanglesCoverExactlyTheIconsInBands) {
  EXPECT_THAT(drawn({"...", "..."}).rectangles(0, 0), IsEmpty());
  EXPECT_THAT(drawn({"###", "###"}).rectangles(5, -7), ElementsAre(PixelRect{5, -7, 3, 2}));
  // Rows that are alike become one band; a gap, another width or another place begins the next.
  EXPECT_THAT(drawn({"#.#", "#.#", "...", "#.#", "##.", ".##"}).rectangles(0, 0),
              ElementsAre(PixelRect{0, 0, 1, 2}, PixelRect{2, 0, 1, 2}, PixelRect{0, 3, 1, 1}, PixelRect{2, 3, 1, 1},
                          PixelRect{0, 4, 2, 1}, PixelRect{1, 5, 2, 1}));
  EXPECT_THAT(drawn({"#..", "#.#"}).rectangles(0, 0),
              ElementsAre(PixelRect{0, 0, 1, 1}, PixelRect{0, 1, 1, 1}, PixelRect{2, 1, 1, 1}));
}

TEST(IconMaskTest, MostOfADesktopIsNotIcons) {
  EXPECT_FALSE(drawn({"##", ".."}).isImplausible());
  EXPECT_TRUE(drawn({"##", "#."}).isImplausible());
}

TEST(IconMaskTest, TheMajorityIsMoreThanHalfOfAllPixels) {
  EXPECT_EQ(majority({1, 2, 2}, {3, 2, 2}), 2U);
  EXPECT_EQ(majority({2, 2, 1}, {1, 2, 3}), std::nullopt);
  EXPECT_EQ(majority({1, 2, 3}, {4, 5, 5}), std::nullopt);
  EXPECT_EQ(majority({}, {}), std::nullopt);
}

TEST(IconMaskTest, ColoursAreTheSameWithinAnErrorOfScaling) {
  for (const std::uint32_t base : {0x00808080U, 0xFF808080U}) {
    EXPECT_TRUE(isSameColour(base, 0x00828080U));
    EXPECT_TRUE(isSameColour(base, 0x0080807EU));
    EXPECT_FALSE(isSameColour(base, 0x00838080U));
    EXPECT_FALSE(isSameColour(base, 0x00807D80U));
    EXPECT_FALSE(isSameColour(base, 0x00808083U));
  }
}

}  // namespace quilex
