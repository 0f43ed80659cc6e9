#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QRegularExpression>
#include <QTest>
#include <QTextEdit>
#include <QTranslator>
#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "linux/toolkit/language/Translations.h"
#include "linux/toolkit/tray/QtMenu.h"
#include "linux/toolkit/windows/Buttons.h"
#include "linux/toolkit/windows/InterfaceFiles.h"
#include "support/AdapterTest.h"
#include "support/Fakes.h"
#include "ui/CustomAlertWindowController.h"
#include "ui/UpgradeWindowController.h"

namespace quilex {

struct WindowTest : AdapterTest {
  static void SetUpTestSuite() { setenv("QT_QPA_PLATFORM", "offscreen", 1); }
  ~WindowTest() override {
    alert.reset();
    offer.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  static QWidgetList visible() {
    QWidgetList all = QApplication::topLevelWidgets();
    all.removeIf([](QWidget* each) { return !each->isVisible(); });
    return all;
  }
  static bool isShown() { return !visible().empty(); }
  /// The window that is seen; fails the test when there is another number of them than one.
  static QWidget* shown() {
    EXPECT_EQ(visible().size(), 1);
    return visible().value(0);
  }
  template <typename Widget>
  static Widget* child(const char* name) {
    return shown()->findChild<Widget*>(QLatin1String(name));
  }
  static QColor middle(QWidget& widget) { return widget.grab().toImage().pixelColor(8, widget.height() / 2); }
  /// Leaves a picture of the window in the folder that QUILEX_SCREENSHOTS names.
  static void photograph(const std::string& picture) {
    if (const char* pictures = std::getenv("QUILEX_SCREENSHOTS")) {
      shown()->grab().save(QString::fromUtf8(pictures) + QLatin1Char('/') + QString::fromStdString(picture) + ".png");
    }
  }
  void showAlert() {
    alert.emplace(load);
    alert->loadWindow();
    alert->titleLabel->setStringValue(localize("You're up to date", "updated"));
    alert->infoLabel->setStringValue(filled(localize("%@ is currently the newest version", "fmt"), "1.0.0(1)"));
    alert->showWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(shown()));
  }
  void showOffer(const std::string& ver, const std::string& exp = "<p>fast</p>") {
    offer.emplace(load, localize, workspace);
    offer->upgradeInfo = {"https://quilex.invalid/get", "", ver, exp};
    offer->showWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(shown()));
  }
  static void key(Qt::Key which) {
    QTest::keyClick(shown(), which);
    EXPECT_FALSE(isShown());
  }
  static void click(const char* button) {
    QTest::mouseClick(child<QPushButton>(button), Qt::LeftButton);
    EXPECT_FALSE(isShown());
  }

  int argc = 1;
  char name[7] = "agent\0";
  char* argv[2] = {name, nullptr};
  QApplication application{argc, argv};
  LinuxBundle bundle{QUILEX_BUNDLE};
  LoadInterfaceFile load = [this](const std::string& file) { return loadInterfaceFile(bundle, file); };
  Localize localize = [](const char* english, const char* comment) {
    return QCoreApplication::translate("QuilexHelper", english, comment).toStdString();
  };
  test::FakeWorkspace workspace;
  std::optional<CustomAlertWindowController> alert;
  std::optional<UpgradeWindowController> offer;
};

TEST_F(WindowTest, AButtonFollowsPointerAndKeys) {
  const QColor rest(10, 20, 30), hover(40, 50, 60), pressed(70, 80, 90);
  QWidget window;
  window.resize(300, 200);
  ButtonWithHoverBackGround button(&window);
  button.setGeometry(50, 50, 120, 40);
  for (const auto& [property, value] : std::map<const char*, QVariant>{{"normalColor", rest},
                                                                       {"hoverColor", hover},
                                                                       {"pressedColor", pressed},
                                                                       {"cornerRadius", 12.0},
                                                                       {"titleColor", QColor(Qt::white)}}) {
    button.setProperty(property, value);
  }
  int clicks = 0;
  QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  EXPECT_EQ(window.grab().toImage().pixelColor(51, 51), window.grab().toImage().pixelColor(5, 5)) << "a round corner";
  const auto hovered = [&](bool in) {
    QTest::mouseMove(&window, in ? QPoint(100, 70) : QPoint(5, 5));
    return waitFor([&] { return middle(button) == (in ? hover : rest); });
  };
  EXPECT_TRUE(hovered(true) && hovered(false) && hovered(true));
  QTest::mousePress(&button, Qt::LeftButton);
  EXPECT_EQ(middle(button), pressed);
  QTest::mouseRelease(&button, Qt::LeftButton);
  EXPECT_EQ(std::pair(middle(button), clicks), std::pair(hover, 1));
  QTest::mousePress(&button, Qt::LeftButton);
  QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(-20, -20));
  EXPECT_EQ(std::pair(middle(button), clicks), std::pair(rest, 1)) << "let go outside";
  QTest::mouseMove(&window, QPoint(5, 5));
  button.clearFocus();
  const QImage without = button.grab().toImage();
  button.setFocus();
  EXPECT_NE(button.grab().toImage(), without) << "the keyboard's focus is seen";
  QTest::keyPress(&button, Qt::Key_Space);
  EXPECT_EQ(middle(button), pressed);
  QTest::keyRelease(&button, Qt::Key_Space);
  EXPECT_EQ(std::pair(middle(button), clicks), std::pair(rest, 2));

  const auto center = [&] { return button.grab().toImage().pixelColor(button.rect().center()); };
  for (const auto& [property, color] : {std::pair("hoverImage", Qt::red), {"normalImage", Qt::blue}}) {
    QPixmap picture(16, 16);
    picture.fill(color);
    button.setProperty(property, QVariant::fromValue(QIcon(picture)));
  }
  EXPECT_TRUE(hovered(true));
  EXPECT_EQ(center(), QColor(Qt::red));
  window.hide();
  EXPECT_EQ(center(), QColor(Qt::blue)) << "hidden under the pointer";
  button.setIcon({});
  button.setText("\u2588\u2588");
  EXPECT_EQ(center(), QColor(Qt::white)) << "the title's colour";
  button.setEnabled(false);
  EXPECT_LT(center().red(), 200) << "a faint title";
}

TEST_F(WindowTest, TheAlertSaysItsLinesAndClosesByButtonReturnAndEscape) {
  for (const auto close : {+[] { click("okButton"); }, +[] { key(Qt::Key_Return); }, +[] { key(Qt::Key_Escape); },
                           +[] { shown()->close(); }}) {
    alert ? alert->showWindow() : showAlert();
    EXPECT_EQ(child<QLabel>("titleLabel")->text(), "You're up to date");
    EXPECT_EQ(child<QLabel>("infoLabel")->text(), "1.0.0(1) is currently the newest version");
    const auto buttons = Qt::WindowCloseButtonHint | Qt::WindowMinMaxButtonsHint | Qt::WindowFullscreenButtonHint;
    EXPECT_EQ(shown()->windowFlags() & buttons, Qt::WindowCloseButtonHint);
    close();
    EXPECT_FALSE(isShown());
  }
}

TEST_F(WindowTest, TheOfferShowsItsVersionAndItsButtonOpensTheAddress) {
  showOffer("2.1.0");
  EXPECT_EQ(child<QTextEdit>("infoLabel")->toPlainText(), "Version: 2.1.0");
  const QImage panel = shown()->grab().toImage();
  EXPECT_EQ(std::pair(panel.pixelColor(0, 0).alpha(), panel.pixelColor(240, 5).alpha()), std::pair(0, 255)) << "round";
  EXPECT_TRUE(shown()->mask().contains(QPoint(240, 5)) && !shown()->mask().contains(QPoint(0, 0))) << "unblended, too";
  EXPECT_EQ(shown()->size(), QSize(480, 340)) << "as large as its picture";
  click("closeButton");
  EXPECT_EQ(workspace.log, "");
  offer->showWindow();
  key(Qt::Key_Return);
  EXPECT_EQ(std::exchange(workspace.log, ""), " https://quilex.invalid/get");
  offer->upgradeInfo->url = "not an address";
  offer->showWindow();
  key(Qt::Key_Return);
  offer.emplace(load, localize, workspace);
  offer->showWindow();
  EXPECT_EQ(child<QTextEdit>("infoLabel")->toPlainText(), "Version: 1.0") << "nothing was offered";
  key(Qt::Key_Return);
  EXPECT_EQ(workspace.log, "");
}

TEST_F(WindowTest, BadOffersHoldNothingUp) {
  const auto repeated = [](const QByteArray& part, int bytes) {
    return part.repeated(bytes / static_cast<int>(part.size())).toStdString();
  };
  write(folder + "secret.html", "secret");
  const std::string exps[] = {repeated("<div><ul><li><b>", 5'000'000), repeated("<table><tr><td>x", 5'000'000),
                              repeated("<", 5'000'000), "<img src='file://" + folder + "secret.html'>\xFF\xFE"};
  const std::string vers[] = {repeated("9", 10'000), std::string("9\n\n\x1b[2J\0\x7f\xE2\x80\xAE.1", 14),
                              repeated("9\n", 10'000), repeated("\xE2\x80\xAE", 10'000)};
  const QRegularExpression unprintable("[\\x00-\\x1F\\x7F\\x{202E}]");
  for (std::size_t i = 0; i < std::size(exps); ++i) {
    // Unbounded, each of the long ones would take minutes; the processor's time, since others may run beside.
    const std::clock_t start = std::clock();
    showOffer(vers[i], exps[i]);
    QCoreApplication::processEvents();
    shown()->grab();
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC * 10) << i;
    EXPECT_FALSE(child<QTextEdit>("infoLabel")->toPlainText().contains(unprintable)) << i;
    EXPECT_EQ(shown()->size(), QSize(480, 340));
    key(Qt::Key_Escape);
  }
}

TEST_F(WindowTest, TextsAreInTheUsersLanguageAndHaveRoom) {
  const auto expectRoom = [](const char* language) {
    for (const QWidget* each : shown()->findChildren<QWidget*>()) {
      // The button to close shows a cross alone.
      EXPECT_TRUE(each->objectName() == "closeButton" || each->width() >= each->minimumSizeHint().width())
          << language << each->objectName().toStdString();
    }
  };
  for (const auto& [language, title] : {std::pair("de-AT:fr", "Alles auf dem neuesten Stand"),
                                        {"eo:ja:de", "お使いのバージョンは最新です"},
                                        {"zh-CN", "已是最新版本"},
                                        {"pt-BR", "Tudo está atualizado"},
                                        {"en-GB:de", "You're up to date"}}) {
    for (auto* old : application.findChildren<QTranslator*>()) {
      QCoreApplication::removeTranslator(old);
      delete old;
    }
    installTranslations(QString(language).split(':'), bundle.path() / "translations");
    showAlert();
    EXPECT_EQ(child<QLabel>("titleLabel")->text(), title) << language;
    expectRoom(language);
    photograph(std::string("alert-") + language);
    key(Qt::Key_Escape);
    showOffer("2.1.0");
    expectRoom(language);
    EXPECT_EQ(child<QLabel>("headline")->text() == "A new version is available", title[0] == 'Y') << language;
    photograph(std::string("offer-") + language);
    key(Qt::Key_Escape);
  }
}

TEST_F(WindowTest, AssistiveTechnologyIsToldNamesAndRoles) {
  const auto told = [](QWidget* widget, QAccessible::Role role, const std::string& words) {
    const auto* accessible = QAccessible::queryAccessibleInterface(widget);
    EXPECT_EQ(accessible->role(), role) << words;
    EXPECT_EQ(accessible->text(QAccessible::Name).toStdString(), words);
  };
  showAlert();
  told(shown(), QAccessible::Dialog, "Software update");
  told(child<QPushButton>("okButton"), QAccessible::Button, "OK");
  key(Qt::Key_Escape);
  showOffer("2.1.0");
  told(shown(), QAccessible::Dialog, "New version");
  told(child<QPushButton>("upgradeButton"), QAccessible::Button, "Get the update");
  told(child<QPushButton>("closeButton"), QAccessible::Button, "Close");
  told(child<QTextEdit>("infoLabel"), QAccessible::EditableText, "About the new version");
}

TEST_F(WindowTest, AnItemMayBeChosenWhileItsMenuGoes) {
  int choices = 0;
  const auto inner = std::make_shared<Menu>("Screen"), outer = std::make_shared<Menu>();
  for (const bool goesWhileChosen : {false, true}) {
    inner->setItems({std::make_shared<MenuAction>("1", [&] { (++choices, outer->setItems({})); })});
    outer->setItems({inner});
    QtMenu menu;
    menu.show(outer);
    menu.widget().actions().first()->menu()->actions().first()->trigger();
    if (!goesWhileChosen) {
      outer->setItems({});
    }
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(menu.widget().actions().size(), 0);
    inner->setItems({});
  }
  EXPECT_EQ(choices, 2);
}

TEST_F(WindowTest, AMissingOrBrokenInterfaceFileIsOneLine) {
  bundle = LinuxBundle(folder);
  for (int line = 1; line <= 2; ++line) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(load("UpgradeWindowController"), nullptr);
    EXPECT_EQ(std::ranges::count(testing::internal::GetCapturedStderr(), '\n'), 1) << line;
    write(folder + "UpgradeWindowController.ui", "<ui version=\"4.0\"><widget class=\"QLabel\"/></ui>");
  }
}

}  // namespace quilex
