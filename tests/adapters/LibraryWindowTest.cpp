#include <SQLiteCpp/SQLiteCpp.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QLineEdit>
#include <QLocale>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>

#include "companion/window/LibraryWindow.h"
#include "companion/window/MonitorView.h"
#include "companion/window/WindowLogic.h"
#include "library/FileURL.h"
#include "settings/SettingsKeys.h"
#include "support/AdapterTest.h"

namespace quilex {

using Titles = std::vector<std::string>;

struct LibraryWindowTest : AdapterTest {
  static void SetUpTestSuite() { setenv("QT_QPA_PLATFORM", "offscreen", 1); }
  LibraryWindowTest() {
    QLocale::setDefault(QLocale(QLocale::English));
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    setenv("XDG_CONFIG_HOME", (folder + "config").c_str(), 1);
    setenv("XDG_DATA_HOME", (folder + "data").c_str(), 1);
  }
  ~LibraryWindowTest() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

  static VideoDetail video(int number, const std::string& title, std::int64_t seconds = 0, int width = 0) {
    VideoDetail video;
    video.id = number;
    video.sign = std::to_string(number);
    video.title = title;
    video.time = seconds;
    video.width = width;
    video.height = width;
    return video;
  }
  static Titles arranged(const std::vector<VideoDetail>& videos, const QString& search, CardOrder order) {
    const auto cards = makeCards(videos);
    Titles titles;
    for (const std::size_t index : arrange(cards, search, order)) {
      titles.push_back(cards[index].title.toStdString());
    }
    return titles;
  }
  // Files whose rows the library gets.
  void makeLibrary(const Titles& titles) {
    const auto library = openTestLibrary();
    for (const std::string& title : titles) {
      const std::string file = folder + title + ".mp4";
      write(file, title);
      VideoDetail added = video(0, title);
      added.sign = std::string(kSignLength - title.size(), '0') + title;
      added.url = fileURL(file);
      ASSERT_TRUE(library->add(added, [] { return Result<std::string>("cover"); }));
    }
  }
  std::unique_ptr<VideoLibrary> openTestLibrary() const {
    if (!QFile::exists(QString::fromStdString(folder + "template.db"))) {
      std::filesystem::create_directories(folder + "data/com.dravo.quilex.QuilexHelper");
      SQLite::Database(folder + "template.db", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(read(QUILEX_SCHEMA));
    }
    auto library = VideoLibrary::open(folder + "data/com.dravo.quilex.QuilexHelper", folder + "template.db");
    return *std::move(library);
  }
  std::string stored() const { return read(folder + "config/K4TQZM71RX.quilex/settings.json"); }
  static Titles titles(const LibraryModel& model) {
    Titles all;
    for (int row = 0; row < model.rowCount(); ++row) {
      all.push_back(model.index(row).data().toString().toStdString());
    }
    return all;
  }

  int argc = 1;
  char name[7] = "window";
  char* argv[2] = {name, nullptr};
  QApplication application{argc, argv};
};

TEST_F(LibraryWindowTest, CardsAreSearchedAndOrdered) {
  const std::vector<VideoDetail> videos{video(1, "Wave 10", 30, 640), video(2, "wave 9", 60, 1280),
                                        video(3, "Élan", 5, 320), video(4, "浜辺の波", 7, 3840),
                                        video(1, "Wave 10b", 31, 640)};
  EXPECT_EQ(arranged(videos, "", CardOrder::title), (Titles{"Élan", "wave 9", "Wave 10b", "浜辺の波"}));
  EXPECT_EQ(arranged(videos, "", CardOrder::added), (Titles{"浜辺の波", "Élan", "wave 9", "Wave 10b"}));
  EXPECT_EQ(arranged(videos, "", CardOrder::duration), (Titles{"wave 9", "Wave 10b", "浜辺の波", "Élan"}));
  EXPECT_EQ(arranged(videos, "", CardOrder::size), (Titles{"浜辺の波", "wave 9", "Wave 10b", "Élan"}));
  EXPECT_EQ(arranged(videos, " 10  WAVE", CardOrder::title), (Titles{"Wave 10b"}));
  EXPECT_EQ(arranged(videos, "elan", CardOrder::title), (Titles{"Élan"}));
  EXPECT_EQ(arranged(videos, "波", CardOrder::title), (Titles{"浜辺の波"}));
  EXPECT_EQ(arranged(videos, "x", CardOrder::title), Titles());

  EXPECT_EQ(shownTitle("a\nb\x01 c"), "a b c");
  EXPECT_EQ(shownTitle("\u202Egpj.exe\u2066"), "gpj.exe") << "marks that turn the text";
  EXPECT_LE(shownTitle(std::string(10'000, 'x')).size(), 300);
  EXPECT_EQ(shownTitle("\xff\xfe"), QString(2, QChar(0xfffd)));
  EXPECT_EQ(durationText(3605) + durationText(-5), "1:00:050:00");
  VideoDetail untitled = video(1, "");
  untitled.url = "file:///videos/a%20name.mp4";
  EXPECT_EQ(makeCards({untitled})[0].title, "a name");
}

TEST_F(LibraryWindowTest, RowsKeepTheirIndexesAndSayWhatTheyShow) {
  LibraryModel model;
  model.setCards(makeCards({video(1, "one", 65, 640), video(2, "two"), video(3, "three")}));
  EXPECT_EQ(titles(model), (Titles{"three", "two", "one"}));
  const QPersistentModelIndex one = model.indexOf("1");
  const QPersistentModelIndex two = model.indexOf("2");
  model.setOrder(CardOrder::title);
  EXPECT_EQ(titles(model), (Titles{"one", "three", "two"}));
  EXPECT_EQ(std::pair(one.row(), two.row()), std::pair(0, 2));
  model.setCards(makeCards({video(1, "one", 65, 640), video(4, "a")}));
  EXPECT_TRUE(one.row() == 1 && !two.isValid());
  model.setShown({"1", true, true});
  model.setMissing("1", true);
  EXPECT_EQ(one.data(Qt::AccessibleTextRole), "one, 1:05, 640 × 640, playing on the desktop, file missing");
  QSignalSpy renamed(&model, &LibraryModel::renameRequested);
  EXPECT_FALSE(model.setData(one, " \n", Qt::EditRole));
  EXPECT_TRUE(model.setData(one, "uno", Qt::EditRole));
  EXPECT_EQ(std::pair(renamed.size(), one.data().toString().toStdString()),
            std::pair(qsizetype{1}, std::string("uno")));
}

TEST_F(LibraryWindowTest, ThePictureLiesOnTheMonitorsAsOnTheDesktop) {
  const std::vector<MonitorPlace> monitors{{"left", {0, 0, 100, 100}, {}}, {"right", {100, 0, 100, 50}, {}}};
  const auto part = [&](std::size_t index, MonitorPicture::Arrangement arrangement, int monitor = 0) {
    return partOnMonitor(monitors, index, {arrangement, monitor, {}}, {400, 200});
  };
  using enum MonitorPicture::Arrangement;
  EXPECT_EQ(part(0, across), QRectF(0, 0, 200, 200));
  EXPECT_EQ(part(1, across), QRectF(200, 0, 200, 100));
  EXPECT_EQ(part(0, each), QRectF(100, 0, 200, 200));
  EXPECT_EQ(part(1, each), QRectF(0, 0, 400, 200));
  EXPECT_TRUE(part(0, one, 1).isEmpty());
  EXPECT_EQ(part(1, one, 1), QRectF(0, 0, 400, 200));
  EXPECT_EQ(part(0, one, 7), QRectF(100, 0, 200, 200)) << "a monitor that does not exist is the first";
}

TEST_F(LibraryWindowTest, CoversFillTheirSizeOrAreReportedOnce) {
  QtBackgroundWork work;
  CoverStore covers(work);
  QSignalSpy loaded(&covers, &CoverStore::loaded);
  QImage picture(400, 100, QImage::Format_RGB32);
  picture.fill(Qt::red);
  picture.save(QString::fromStdString(folder) + "wide.png");
  VideoDetail wide = video(1, "wide");
  wide.imgurl = fileURL(folder + "wide.png");
  VideoDetail broken = video(2, "broken");
  write(folder + "broken.jpg", "no picture");
  broken.imgurl = fileURL(folder + "broken.jpg");
  broken.url = fileURL(folder + "none.mp4");
  EXPECT_TRUE(covers.cover(wide, {160, 90}).isNull() && covers.cover(broken, {160, 90}).isNull());
  ASSERT_TRUE(waitFor([&] { return loaded.size() == 2; }));
  EXPECT_EQ(covers.cover(wide, {160, 90}).size(), QSize(160, 90));
  EXPECT_EQ(covers.cover(wide, {160, 90}).toImage().pixelColor(80, 45), QColor(Qt::red));
  EXPECT_EQ(covers.cover(wide, {320, 180}).size(), QSize(160, 90)) << "until the other size is there";
  ASSERT_TRUE(waitFor([&] { return covers.cover(wide, {320, 180}).width() == 320; }));
  EXPECT_TRUE(covers.cover(broken, {160, 90}).isNull());
  QTest::qWait(50);
  EXPECT_EQ(loaded.size(), 3) << "what is broken is not read again";
}

TEST_F(LibraryWindowTest, SettingsAgreeWithOtherPrograms) {
  QtRunLoop loop;
  QtBackgroundWork work;
  JobQueue jobs(work);
  DesktopSettings settings(loop, jobs);
  EXPECT_EQ(settings.value<float>(settings::kVolume), 0.5F);
  for (const float volume : {0.1F, 0.2F, 0.3F}) {
    settings.set(settings::kVolume, volume);
    EXPECT_EQ(settings.value<float>(settings::kVolume), volume) << "at once";
  }
  ASSERT_TRUE(waitFor([&] { return jobs.isIdle(); }));
  EXPECT_NE(stored().find("\"Volume\": 0.3"), std::string::npos) << stored();
  const std::string file = folder + "config/K4TQZM71RX.quilex/settings.json";
  write(file, R"({"Volume": 0.7, "other": [1]})");
  ASSERT_TRUE(waitFor([&] { return settings.value<float>(settings::kVolume) == 0.7F; }));
  // What is broken is not written over, and the last good value stays.
  QSignalSpy noted(&settings, &DesktopSettings::noted);
  write(file, "{");
  settings.set(settings::kMute, true);
  ASSERT_TRUE(waitFor([&] { return !noted.isEmpty(); }));
  EXPECT_EQ(std::pair(stored(), settings.value<bool>(settings::kMute)), std::pair(std::string("{"), false));
  EXPECT_EQ(settings.value<float>(settings::kVolume), 0.7F);
}

TEST_F(LibraryWindowTest, ARemovalIsTakenBackToItsPlace) {
  makeLibrary({"a", "b", "c"});
  const std::string signB = std::string(31, '0') + "b";
  WindowLogic logic;
  logic.model.setOrder(CardOrder::title);
  ASSERT_TRUE(waitFor([&] { return logic.model.rowCount() == 3; }));
  logic.play(signB);
  EXPECT_EQ(logic.model.shown(), (ShownVideo{signB, true, true})) << "at once";
  ASSERT_TRUE(waitFor([&] { return stored().find(signB) != std::string::npos; }));
  logic.remove({signB});
  ASSERT_TRUE(waitFor([&] { return titles(logic.model) == Titles{"a", "c"}; }));
  ASSERT_TRUE(waitFor([&] { return logic.canUndo(); }));
  EXPECT_TRUE(waitFor([&] { return logic.model.shown().sign == std::string(31, '0') + "c"; }));
  EXPECT_TRUE(QFile::exists(QString::fromStdString(folder + "b.mp4")));
  logic.undo();
  EXPECT_FALSE(logic.canUndo());
  ASSERT_TRUE(waitFor([&] { return logic.model.rowCount() == 3 && logic.model.shown().sign == signB; }));
  Titles rows;
  const auto videos = openTestLibrary()->videos();
  std::ranges::transform(*videos, std::back_inserter(rows), &VideoDetail::title);
  EXPECT_EQ(rows, (Titles{"a", "b", "c"}));
  EXPECT_EQ((*videos)[1].id, 2);

  logic.remove({signB, std::string(31, '0') + "a", std::string(31, '0') + "c"});
  ASSERT_TRUE(waitFor([&] { return logic.canUndo() && logic.model.rowCount() == 0; }));
  EXPECT_NE(stored().find("\"IsOpenPlayer\": false"), std::string::npos);
  EXPECT_NE(stored().find("LibraryWasEmptied"), std::string::npos);
  logic.undo();
  ASSERT_TRUE(waitFor([&] { return logic.model.rowCount() == 3 && logic.model.shown().isOpen; }));
  EXPECT_EQ(stored().find("LibraryWasEmptied"), std::string::npos);

  QFile::remove(QString::fromStdString(folder + "b.mp4"));
  QSignalSpy noted(&logic, &WindowLogic::noted);
  logic.play(signB);
  ASSERT_TRUE(waitFor([&] { return !noted.isEmpty(); }));
  EXPECT_TRUE(noted[0][0].toString().contains("is gone")) << noted[0][0].toString().toStdString();
  logic.end();
}

TEST_F(LibraryWindowTest, FoldersAreSearchedForVideos) {
  QDir(QString::fromStdString(folder)).mkpath("videos/deep");
  for (const char* const file : {"videos/b.mp4", "videos/a.webm", "videos/deep/c.mkv", "videos/notes.txt", "x.txt"}) {
    write(folder + file, "");
  }
  const QString root = QString::fromStdString(folder);
  const auto found = expandFolders({root + "x.txt", root + "videos"});
  EXPECT_EQ(found,
            (Titles{folder + "x.txt", folder + "videos/a.webm", folder + "videos/b.mp4", folder + "videos/deep/c.mkv"}))
      << "a file that is named is tried, whatever it is called";
}

TEST_F(LibraryWindowTest, TypingSearchesAndKeysReachEverything) {
  makeLibrary({"aurora", "dunes"});
  WindowLogic logic;
  LibraryWindow window(logic);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  ASSERT_TRUE(waitFor([&] { return logic.model.rowCount() == 2; }));
  auto* const view = window.findChild<LibraryView*>();
  QTest::keyClicks(view, "dun");
  ASSERT_TRUE(waitFor([&] { return logic.model.rowCount() == 1; }));
  auto* const search = window.findChild<QLineEdit*>();
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_TRUE(view->hasFocus());
  QTest::keyClick(view, Qt::Key_Return);
  EXPECT_TRUE(waitFor([&] { return stored().find("dunes") != std::string::npos; }));
  const int before = view->coverWidth();
  const QPointF middle(50, 50);
  QWheelEvent wheel(middle, view->mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(view->viewport(), &wheel);
  EXPECT_GT(view->coverWidth(), before);
  logic.end();
}

}  // namespace quilex
