#include <gtest/gtest.h>

#include "ui/ButtonLook.h"

namespace quilex {

constexpr Color kPaper{255, 255, 255}, kInk{20, 20, 20}, kRed{255, 0, 0}, kGreen{0, 255, 0}, kBlue{0, 0, 255};

struct ButtonLookTest : testing::Test {
  ButtonLook look{{kPaper, kInk}};
  std::optional<Color> background() const { return look.layer()->backgroundColor; }
};

TEST_F(ButtonLookTest, AFreshButtonHasTheSystemsColoursAndNoLayerUntilItAwakes) {
  EXPECT_EQ(std::tuple(look.normalColor(), look.titleColor(), look.cornerRadius(), look.isCustomBorder()),
            std::tuple(kPaper, kInk, 5.0, false));
  look.setNormalColor(kRed);
  look.setCornerRadius(9);
  look.mouseEntered();
  look.mouseExited();
  EXPECT_FALSE(look.layer());
  ButtonLook bordered = look;
  look.awakeFromNib();
  look.setNormalColor(kBlue);
  EXPECT_EQ(look.layer(), (ButtonLook::Layer{kBlue, 9, true, 0, {}}));
  bordered.setCustomBorder(false);
  EXPECT_EQ(bordered.layer(), (ButtonLook::Layer{{}, 0, false, 0.5, {170, 170, 170}})) << "by any assignment";
  bordered.awakeFromNib();
  EXPECT_EQ(bordered.layer(), (ButtonLook::Layer{kRed, 9, true, 0.5, {170, 170, 170}}));
}

TEST_F(ButtonLookTest, ColoursAndImagesFollowThePointerAndADisabledButtonKeepsItsLook) {
  const auto hover = std::make_shared<const Image>(), normal = std::make_shared<const Image>();
  const auto shows = [&](const Color& color, const ButtonLook::ImagePointer& image) {
    return background() == color && look.image() == image;
  };
  look.awakeFromNib();
  look.mouseEntered();
  EXPECT_TRUE(shows(kPaper, nullptr)) << "nothing of its own";
  look.pressedColor = kRed;
  look.mouseDown();
  look.mouseDownEnded();
  look.hoverColor = kBlue;
  look.hoverImage = hover;
  EXPECT_TRUE(shows(kRed, nullptr)) << "there was nothing to go back to, and what is set is only stored";
  look.mouseEntered();
  look.mouseDown();
  look.mouseDownEnded();
  look.setSystemColors({kInk, kPaper});
  EXPECT_TRUE(shows(kBlue, hover));
  look.mouseExited();
  EXPECT_TRUE(shows(kInk, hover)) << "no other image to go back to";
  look.normalImage = normal;
  for (const bool isInside : {false, true}) {
    look.isEnabled = true;
    isInside ? look.mouseEntered() : look.mouseExited();
    look.isEnabled = false;
    isInside ? look.mouseExited() : look.mouseEntered();
    look.mouseDown();
    look.mouseDownEnded();
    EXPECT_TRUE(isInside ? shows(kBlue, hover) : shows(kInk, normal));
  }
  look.setTitleColor(kGreen);
  EXPECT_EQ(std::pair(background(), look.titleColor()), std::pair(std::optional(kInk), kGreen));
}

}  // namespace quilex
