#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "linux/bundle/LinuxBundle.h"
#include "linux/dbus/BusConnection.h"
#include "linux/dbus/DBusNotificationCenter.h"
#include "linux/dbus/SignalReceiver.h"
#include "linux/qt/EndDeadline.h"
#include "linux/qt/QtRunLoop.h"
#include "linux/qt/Wakeup.h"
#include "linux/settings/JsonSettingsSuite.h"
#include "support/AdapterTest.h"

using namespace quilex;
using namespace std::chrono_literals;

int main(int argc, char** argv) {
  // On a bus of their own the tests neither meet a running agent nor tell it anything.
  if (!qEnvironmentVariableIsSet("QUILEX_TEST_BUS")) {
    qputenv("QUILEX_TEST_BUS", "1");
    std::vector<char*> command(argv, argv + argc + 1);
    command.insert(command.begin(), {const_cast<char*>("dbus-run-session"), const_cast<char*>("--")});
    return execvp(command[0], command.data());
  }
  const QCoreApplication application(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  return RUN_ALL_TESTS();
}

TEST(QtTest, EachActionRunsOnceInTheLoopAndNotAfterItsTokenIsReleased) {
  QtRunLoop loop;
  int runs = 0, ticks = 0;
  std::ignore = loop.after(0ms, [] { ADD_FAILURE(); });  // released at once
  std::optional<Disposable> timer = loop.every(0ms, [&, one = std::make_shared<int>(1)] {
    timer.reset();
    runs += *one;  // the action outlives the release of its token
  });
  const auto token = loop.after(0ms, [&] { runs += 10; });
  const Wakeup wakeup([&] { runs += 100; });
  std::thread([&] { (wakeup.signal(), wakeup.signal()); }).join();
  EXPECT_EQ(runs, 0);
  const auto clock = loop.every(5ms, [&] { ++ticks; });
  EXPECT_TRUE(waitFor([&] { return ticks >= 3 && runs >= 111; }));
  EXPECT_EQ(runs, 111);
}

[[noreturn]] void hang() {
  for (;;) {
    pause();
  }
}

TEST(EndDeadlineTest, TheEndIsNeitherHeldUpNorBegunTwice) {
  EndDeadline& deadline = EndDeadline::shared();
  const auto end = [&] {
    const auto stuck = deadline.addLastAction(hang);
    const auto said = deadline.addLastAction([] { std::fputs("last\n", stderr); });
    std::ignore = deadline.addLastAction(std::abort);  // released at once
    const auto quit = deadline.observe([] {
      std::fputs("begun ", stderr);
      std::raise(SIGINT);
      hang();
    });
    std::raise(SIGTERM);
    waitFor([] { return false; });
  };
  EXPECT_EXIT(end(), ::testing::ExitedWithCode(0), "^begun last\n$");
  EXPECT_EXIT((deadline.begin(3), deadline.begin(4), std::raise(SIGTERM), hang()), ::testing::ExitedWithCode(3), "^$");
}

TEST(DBusNotificationCenterTest, ObserversHearTheirNameFromAnySenderUntilReleased) {
  DBusNotificationCenter center;
  int heard = 0, others = 0, seen = 0;
  std::optional<Disposable> token = center.observe("A", [&] { ++heard == 4 ? token.reset() : void(); });
  const auto other = center.observe("B", [&] { ++others; });
  // A process may end as soon as it has posted.
  EXPECT_EXIT(DBusNotificationCenter().post("A"); _exit(0), ::testing::ExitedWithCode(0), "");
  EXPECT_TRUE(waitFor([&] { return heard == 1; }));
  // Another program sees the form of the signal, and its own signals are heard.
  auto program = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "program");
  const QString path = "/com/dravo/quilex/Notifications";
  const QString interface = "com.dravo.quilex.Notifications";
  SignalReceiver receiver([&](bool) { ++seen; });
  program.connect({}, path, interface, "Posted", "ssa{sv}", &receiver, SLOT(received()));
  program.interface()->isServiceRegistered("a.b");  // the bus has the registration once it answers this
  center.post("A");
  postSeparately("A", 10s);
  EXPECT_TRUE(waitFor([&] { return seen == 2 && heard == 3; }));
  for (const int round : {1, 2}) {
    for (const char* name : {"AB", "A", "B"}) {
      program.send(QDBusMessage::createSignal(path, interface, "Posted") << name << "" << QVariantMap{{"key", 1}});
    }
    EXPECT_TRUE(waitFor([&] { return others == round; }));
    EXPECT_EQ(heard, 4);
  }
}

struct FilesTest : AdapterTest {
  auto opened() { return JsonSettingsSuite::open(file, loop); }
  auto open() { return std::get<std::unique_ptr<JsonSettingsSuite>>(opened()); }
  auto stored() const { return nlohmann::ordered_json::parse(read(file), nullptr, false).dump(); }
  QtRunLoop loop;
  std::string file = folder + "settings.json";
};

TEST_F(FilesTest, BundleHasItsInformationAndTheUsersDirectories) {
  const auto information = [&] { return LinuxBundle(folder).environment().informationDictionary; };
  EXPECT_TRUE(information().empty());
  write(folder + "Info.json", R"({"short": "1.2", "build": 7})");
  EXPECT_EQ(information(), (decltype(information()){{"short", "1.2"}, {"build", std::nullopt}}));
  setenv("HOME", "/me", 1);
  setenv("XDG_CONFIG_HOME", "relative", 1);
  setenv("XDG_DATA_HOME", "/data", 1);
  EXPECT_EQ(configHome(), "/me/.config");
  EXPECT_EQ(dataHome(), "/data");
}

TEST_F(FilesTest, ChangesOfOthersAreSeenAndAnUnchangedFileIsNotReadAgain) {
  write(file, R"({"n": 10})");
  const auto suite = open();
  // It is read again until its time stamp is old enough to be trusted, and no longer.
  EXPECT_TRUE(waitFor([&] {
    const auto before = suite->contentReads();
    return suite->integer("n") == 10 && suite->contentReads() == before;
  }));
  for (int value = 11; value < 99; ++value) {
    if (value % 2 == 0) {
      suite->setInteger("n", 10);
      ASSERT_FALSE(suite->writeNow(0ms));
    }
    const auto target = value % 3 == 0 ? folder + "new" : file;  // atomically, or in place with the same size
    write(target, "{\n  \"n\": " + std::to_string(value) + "\n}\n");
    std::filesystem::rename(target, file);
    ASSERT_EQ(suite->integer("n"), value);
  }
}

TEST_F(FilesTest, ReadsAreTypedAndAWriteChangesItsOwnKeysAlone) {
  write(file, R"({"Volume": 0.5, "gone": "0", "whole": 2.0})");
  const auto suite = open();
  const std::tuple typed(suite->integer("whole"), suite->integer("Volume"), suite->real("gone"),
                         suite->string("whole"));
  EXPECT_EQ(typed, std::tuple(2, 0, 0, std::nullopt));
  suite->setReal("Volume", 0.1F);
  suite->remove("gone");
  EXPECT_FALSE(suite->contains("gone"));
  write(file, R"({"zebra": true, "Volume": 0.75, "gone": 1, "apple": {"x": [1, null]}})");
  // Without `synchronize` the event loop brings the changes into the file.
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"zebra":true,"Volume":0.1,"apple":{"x":[1,null]}})"; }));
  EXPECT_EQ(open()->real("Volume"), 0.1F);
}

TEST_F(FilesTest, NothingIsWrittenOverWhatIsNoJsonObject) {
  for (const char* text : {"", "{", "[1]"}) {
    write(file, text);
    EXPECT_NE(std::get<JsonSettingsSuite::OpenError>(opened()).message.find(file), std::string::npos);
  }
  write(file, R"({"a": 1})");
  const auto suite = open();
  write(file, "{");
  suite->setInteger("b", 2);
  suite->synchronize();
  EXPECT_EQ(std::tuple(suite->integer("a"), suite->integer("b"), read(file)), std::tuple(1, 2, "{"));
  write(file, R"({"a": 3})");
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"a":3,"b":2})"; }));
  std::filesystem::remove(file);
  suite->setInteger("b", 4);
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"a":3,"b":4})"; }));
}

TEST_F(FilesTest, AFailedWriteIsToldAndTriedAgain) {
  file = folder + "sub/settings.json";
  const auto suite = open();
  std::filesystem::remove(folder + "sub");
  suite->setInteger("a", 1);
  EXPECT_NE(suite->writeNow(0ms)->message.find(file), std::string::npos);
  EXPECT_FALSE(suite->contains("a"));
  suite->setInteger("b", 2);
  suite->synchronize();
  std::filesystem::create_directory(folder + "sub");
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"b":2})"; }));
  // Another program holds the lock.
  const auto held = folder + "sub/settings.json.lock";
  write(held, "");
  suite->setInteger("b", 3);
  EXPECT_NE(suite->writeNow(50ms)->message.find("locked"), std::string::npos);
  suite->setInteger("b", 4);
  suite->synchronize();
  EXPECT_EQ(stored(), R"({"b":2})");
  std::filesystem::remove(held);
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"b":4})"; }));
}
