#include <gtest/gtest.h>

#include "linux/render/Pixels.h"

using namespace quilex;

TEST(PixelsTest, AWindowShowsThePartOfThePictureThatLiesInIt) {
  const Rect window{1280, 0, 800, 600};
  for (const auto& [view, scale, shown] : std::initializer_list<std::tuple<Rect, PixelScale, PicturePart>>{
           {{0, 0, 800, 600}, {}, {{800, 600}, {0, 0, 800, 600}}},
           {{-1280, 0, 2080, 720}, {}, {{2080, 720}, {1280, 0, 800, 600}}},
           {{-1280, -200, 2080, 720}, {1.5, 2}, {{3120, 1440}, {1920, 400, 1200, 1040}}},
           {{-400.5, 0, 800.4, 600}, {}, {{800, 600}, {401, 0, 399, 600}}},
           {{0, -900, 800, 600}, {}, {{800, 600}, {0, 600, 800, 0}}}}) {
    EXPECT_EQ(shownPart(view, window, scale), shown) << view.x;
  }
  EXPECT_EQ(pixels(Rect{-0.5, 0.4, 0.5, 1.5}), (PixelRect{-1, 0, 1, 2}));
}
