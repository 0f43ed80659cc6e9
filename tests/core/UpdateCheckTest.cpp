#include "support/AgentTest.h"

namespace quilex::test {

using namespace std::literals;

/// The application is 1.0.9.0.
struct UpdateCheckTest : AgentTest {
  UpdateCheckTest() {
    launch({});
    answer({});
  }
  static UpgradeInfo version(const std::string& ver) {
    return {"https://quilex.invalid/" + ver, "", ver, "<p>new</p>"};
  }
  /// Answers the oldest request, and tells what that did to the windows.
  std::string answer(const std::optional<UpgradeInfo>& info) {
    upgrades.requests.front()(info);
    upgrades.requests.pop_front();
    EXPECT_EQ(windowLog, "") << "only in the next turn of the run loop";
    runLoop.advance(0ms);
    return std::exchange(windowLog, "");
  }
  std::string check(AppDelegate::Check check, const std::optional<UpgradeInfo>& info) {
    delegate->checkUpdates(check);
    return answer(info);
  }
  static constexpr auto automatic = AppDelegate::Check::automatic;
  static constexpr auto manual = AppDelegate::Check::manual;
  static constexpr auto kOffer = " UpgradeWindowController clear upgrade_back_ground show";
  static constexpr auto kAlert = " CustomAlertWindowController -1 -7 -2 show";
  std::string text(const std::string& field) const { return dialog->fields[field].text; }
};

TEST_F(UpdateCheckTest, WhatIsShownDependsOnTheVersionAndOnWhoAsked) {
  for (const auto& info : {std::optional<UpgradeInfo>(), std::optional(version("1.0.9.0")),
                           std::optional(version("1.0.10.0")), std::optional(version(""))}) {
    EXPECT_EQ(check(automatic, info), "");
  }
  EXPECT_EQ(check(manual, {}), kAlert);
  EXPECT_EQ(text("titleLabel"), "You're up to date|updated");
  EXPECT_EQ(text("infoLabel"), "1.0.9(0) is currently the newest version|fmt");
  dialog->buttons["okButton"].press();
  EXPECT_EQ(std::exchange(windowLog, ""), " close");
  EXPECT_EQ(check(manual, version("1.0.10.0")), " show") << "the same window; versions compare as texts";
  EXPECT_EQ(check(automatic, version("1.0.9.1")), kOffer);
  EXPECT_EQ(text("infoLabel"), "Version: 1.0.9.1|version");
  EXPECT_EQ(dialog->fields["infoLabel"].html, "<p>new</p>");
  EXPECT_EQ(check(manual, version("3.0")), std::string(" close gone") + kOffer) << "in place of the one before";
}

TEST_F(UpdateCheckTest, TwoAnswersInOneTurnAreBothSeenTo) {
  delegate->checkUpdates(manual);
  delegate->checkUpdates(automatic);
  upgrades.requests.front()({});
  upgrades.requests.back()(version("2.0"));
  runLoop.advance(0ms);
  EXPECT_EQ(windowLog, std::string(kAlert) + kOffer);
}

TEST_F(UpdateCheckTest, WithoutInterfaceFilesACheckIsDoneAllTheSame) {
  interfaceFilesAreMissing = true;
  EXPECT_EQ(check(manual, version("2.0")), " UpgradeWindowController");
  EXPECT_EQ(check(manual, {}), " CustomAlertWindowController");
  interfaceFilesAreMissing = false;
  EXPECT_EQ(check(manual, {}), kAlert);
}

}  // namespace quilex::test
