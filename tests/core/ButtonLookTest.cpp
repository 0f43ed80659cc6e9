#include <gtest/gtest.h>

#include "ui/ButtonLook.h"

namespace quilex {

constexpr Color kPaper{255, 255, 255};
constexpr Color kInk{20, 20, 20};
constexpr Color kRed{255, 0, 0};
constexpr Color kGreen{0, 255, 0};
constexpr Color kBlue{0, 0, 255};

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
  EXPECT_EQ(look.layer(), (ButtonLook::Layer{kRed, 9, true, 0, {}}));
  bordered.setCustomBorder(false);
  EXPECT_EQ(bordered.layer(), (ButtonLook::Layer{{}, 0, false, 0.5, {170, 170, 170}})) << "by any assignment";
  bordered.awakeFromNib();
  EXPECT_EQ(bordered.layer(), (ButtonLook::Layer{kRed, 9, true, 0.5, {170, 170, 170}}));
}

TEST_F(ButtonLookTest, ColoursFollowThePointer) {
  look.awakeFromNib();
  look.mouseEntered();
  EXPECT_EQ(background(), kPaper) << "no hover colour";
  look.mouseDown();
  EXPECT_EQ(background(), kPaper) << "no pressed colour";
  look.hoverColor = kBlue;
  look.pressedColor = kRed;
  EXPECT_EQ(background(), kPaper) << "stored only";
  look.mouseEntered();
  EXPECT_EQ(background(), kBlue);
  look.mouseDown();
  EXPECT_EQ(background(), kRed);
  look.mouseDownEnded();
  EXPECT_EQ(background(), kBlue);
  look.setTitleColor(kGreen);
  EXPECT_EQ(std::pair(background(), look.titleColor()), std::pair(std::optional(kPaper), kGreen));
  look.mouseEntered();
  look.mouseExited();
  EXPECT_EQ(background(), kPaper);
  look.setSystemColors({kInk, kPaper});
  EXPECT_EQ(std::pair(background(), look.titleColor()), std::pair(std::optional(kInk), kGreen));
}

TEST_F(ButtonLookTest, ADisabledButtonKeepsColourAndImage) {
  const auto first = std::make_shared<const Image>();
  const auto second = std::make_shared<const Image>();
  look.awakeFromNib();
  look.hoverImage = first;
  look.normalImage = second;
  look.hoverColor = kBlue;
  look.pressedColor = kRed;
  look.mouseEntered();
  EXPECT_EQ(look.image(), first);
  look.isEnabled = false;
  look.mouseDown();
  look.mouseDownEnded();
  look.mouseExited();
  EXPECT_EQ(std::pair(background(), look.image()), std::pair(std::optional(kBlue), first));
  look.isEnabled = true;
  look.mouseExited();
  EXPECT_EQ(std::pair(background(), look.image()), std::pair(std::optional(kPaper), second));
}

}  // namespace quilex
