#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/BusConnection.h"
#include "linux/session/dbus/DBusNotificationCenter.h"
#include "linux/session/settings/JsonSettingsSuite.h"
#include "linux/toolkit/loop/EndDeadline.h"
#include "linux/toolkit/loop/QtRunLoop.h"
#include "linux/toolkit/loop/Wakeup.h"
#include "settings/Preferences.h"
#include "support/AdapterTest.h"

using namespace quilex;
using namespace std::chrono_literals;
using testing::AllOf, testing::HasSubstr;

int main(int argc, char** argv) {
  // On its own bus a test neither finds nor notifies a running agent.
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
  int heard = 0, others = 0;
  std::optional<Disposable> token = center.observe("A", [&] { ++heard == 3 ? token.reset() : void(); });
  const auto other = center.observe("B", [&] { ++others; });
  // A process may end as soon as it has posted.
  EXPECT_EXIT(DBusNotificationCenter().post("A"); _exit(0), ::testing::ExitedWithCode(0), "");
  postSeparately("A", 10s);
  EXPECT_TRUE(waitFor([&] { return heard == 2; }));
  for (const char* name : {"AB", "A", "A", "B"}) {
    center.post(name);
  }
  EXPECT_TRUE(waitFor([&] { return others == 1; }));
  EXPECT_EQ(heard, 3);
}

struct FilesTest : AdapterTest {
  auto open() { return JsonSettingsSuite::open(file, loop).value(); }
  auto openError() { return JsonSettingsSuite::open(file, loop).error().message; }
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
  EXPECT_EQ(configHome(), "/me/.config");
}

TEST_F(FilesTest, ChangesOfOthersAreSeenAndAnUnchangedFileIsNotReadAgain) {
  write(file, R"({"n": 10})");
  const auto suite = open();
  // The file is read again only until its time stamp is old enough to be trusted.
  EXPECT_TRUE(waitFor([&] {
    const auto before = suite->contentReads();
    return suite->integer("n") == 10 && suite->contentReads() == before;
  }));
  for (int value = 11; value < 99; ++value) {
    if (value % 2 == 0) {
      suite->setInteger("n", 10);
      ASSERT_TRUE(suite->writeNow(0ms));
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
  EXPECT_EQ(std::tuple(suite->integer("whole"), suite->integer("Volume"), suite->real("gone")), std::tuple(2, 0, 0));
  EXPECT_EQ(suite->string("whole"), std::nullopt);
  suite->setReal("Volume", 0.1F);
  suite->remove("gone");
  EXPECT_FALSE(suite->contains("gone"));
  write(file, R"({"zebra": true, "Volume": 0.5, "gone": "0", "apple": {"x": [1, null]}})");
  // Without `synchronize` the event loop brings the changes into the file.
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"Volume":0.1,"apple":{"x":[1,null]},"zebra":true})"; }));
  EXPECT_EQ(open()->real("Volume"), 0.1F);
}

TEST_F(FilesTest, NothingIsWrittenOverWhatAnotherProcessStoredSince) {
  write(file, R"({"CurrentVideoSign": "0", "IsOpenPlayer": false, "isPlaying": false, "n": 0, "m": 0})");
  const auto suite = open(), other = open();
  Preferences preferences(*suite, loop);
  // A program that is between reading and writing holds the lock.
  std::optional held = SettingsFile(file).lock();
  ASSERT_TRUE(*held && (*held)->has_value());
  write(file, R"({"CurrentVideoSign": "A", "IsOpenPlayer": false, "isPlaying": true, "n": 0, "m": 0})");
  preferences.updateUserDefaultFromDisk();
  EXPECT_EQ(preferences.playingVideoSign.get(), "A");
  EXPECT_TRUE(preferences.isOpenPlayer.get());
  suite->setInteger("n", 1);
  suite->setInteger("m", 1);
  suite->synchronize();
  held.reset();
  other->setString("CurrentVideoSign", "B");
  other->setInteger("n", 2);
  ASSERT_TRUE(other->writeNow(0ms));
  EXPECT_TRUE(waitFor([&] { return preferences.playingVideoSign.get() == "B" && other->integer("m") == 1; }));
  EXPECT_EQ(std::tuple(other->string("CurrentVideoSign"), other->integer("n"), other->boolean("IsOpenPlayer")),
            std::tuple("B", 2, true));
  EXPECT_EQ(suite->integer("n"), 2);
}

TEST_F(FilesTest, NothingIsWrittenOverWhatHoldsNoSettings) {
  const auto nested = [](int depth) {
    const auto count = static_cast<std::size_t>(depth);
    return R"({"a":)" + std::string(count, '[') + std::string(count, ']') + "}";
  };
  const std::string large = R"({"a":")" + std::string(1'000'000, 'x') + "\"}";
  const std::pair<std::string, const char*> cases[] = {
      {"", "JSON"}, {"{", "JSON"}, {"[1]", "JSON"}, {nested(128), "JSON"}, {large, "1 MB"}};
  for (const auto& [text, problem] : cases) {
    write(file, text);
    EXPECT_THAT(openError(), AllOf(HasSubstr(file), HasSubstr(problem)));
  }
  write(file, nested(127));
  EXPECT_TRUE(open()->contains("a"));
  std::filesystem::remove(file);
  // Nobody will ever write to it.
  mkfifo(file.c_str(), S_IRWXU);
  EXPECT_THAT(openError(), HasSubstr("not a regular file"));
  std::filesystem::remove(file);
  std::filesystem::create_symlink(file, file);
  EXPECT_THAT(openError(), HasSubstr("cannot be read"));
  std::filesystem::remove(file);

  write(file, R"({"a": 1})");
  const auto suite = open();
  ::testing::internal::CaptureStderr();
  write(file, "{");
  suite->setInteger("b", 2);
  suite->synchronize();
  EXPECT_EQ(std::tuple(suite->integer("a"), suite->integer("b"), read(file)), std::tuple(1, 2, "{"));
  std::filesystem::remove(file);
  mkfifo(file.c_str(), S_IRWXU);
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(std::tuple(suite->integer("a"), suite->integer("b")), std::tuple(1, 2));
  }
  const std::string told = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::ranges::count(told, '\n'), 2) << told;
  std::filesystem::remove(file);
  write(file, R"({"a": 3})");
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"a":3,"b":2})"; }));
  std::filesystem::remove(file);
  suite->setInteger("b", 4);
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"a":3,"b":4})"; }));
  // A file that would be too large to read again is not written either.
  suite->setString("c", std::string(1'000'000, 'x'));
  EXPECT_NE(suite->writeNow(0ms).error().message.find("1 MB"), std::string::npos);
  EXPECT_EQ(stored(), R"({"a":3,"b":4})");
}

TEST_F(FilesTest, AFailedWriteIsToldAndTriedAgain) {
  file = folder + "sub/settings.json";
  umask(0);
  const auto suite = open();
  const auto mode = [](const std::string& path) { return std::filesystem::status(path).permissions(); };
  EXPECT_EQ(mode(folder + "sub"), std::filesystem::perms(0700));
  std::filesystem::remove(folder + "sub");
  suite->setInteger("a", 1);
  EXPECT_NE(suite->writeNow(0ms).error().message.find(file), std::string::npos);
  EXPECT_FALSE(suite->contains("a"));
  suite->setInteger("b", 2);
  suite->synchronize();
  std::filesystem::create_directory(folder + "sub");
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"b":2})"; }));
  EXPECT_EQ(mode(file), std::filesystem::perms(0600));
  std::filesystem::permissions(file, std::filesystem::perms(0644));
  // Another program holds the lock, or the lock file is something else.
  std::optional held = SettingsFile(file).lock();
  suite->setInteger("b", 3);
  EXPECT_NE(suite->writeNow(50ms).error().message.find("locked"), std::string::npos);
  suite->setInteger("b", 4);
  suite->synchronize();
  EXPECT_EQ(stored(), R"({"b":2})");
  held.reset();
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"b":4})"; }));
  EXPECT_EQ(mode(file), std::filesystem::perms(0644));
  const std::string lock = file + ".lock";
  for (const auto& block : {mkdir, mkfifo}) {
    std::filesystem::remove(lock);
    block(lock.c_str(), 0700);
    suite->setInteger("b", 5);
    EXPECT_NE(suite->writeNow(0ms).error().message.find(lock), std::string::npos);
  }
}
