#include <thread>

#include "base/MainThread.h"
#include "base/MinuteCounter.h"
#include "base/ObservableProperty.h"
#include "platform/AppInfo.h"
#include "support/Fakes.h"

namespace quilex::test {

TEST(DisposableTest, RunsItsClosureOnceHoweverOftenItIsMoved) {
  int ended = 0;
  const auto end = [&] { ++ended; };
  {
    Disposable first(end);
    Disposable second(std::move(first));
    second = Disposable(end);
    EXPECT_EQ(ended, 1) << "assigning ends what the token held";
  }
  EXPECT_EQ(ended, 2);
  EXPECT_DEATH(const Disposable token(std::function<void()>{}),
               "unimplemented initializer 'init\\(\\)' for class 'QuilexHelper.Disposable'");
}

TEST(MainThreadTest, StopsACallFromAnotherThreadInDebugBuilds) {
  const MainThread mainThread;
  mainThread.check();
  EXPECT_DEBUG_DEATH(std::thread([&] { mainThread.check(); }).join(), "off the main thread");
}

struct ObservablePropertyTest : testing::Test {
  std::function<void(int)> note(const std::string& who) {
    return [this, who](int value) { log += " " + who + std::to_string(value); };
  }
  std::string log;
};

TEST_F(ObservablePropertyTest, IsStoredBeforeEachIsToldTheLatestValueEvenIfItIsTheSame) {
  ObservableProperty<int> property(note("store"));
  property.assign(2);
  const auto correcting = property.observe([&](int value) { value == 1 ? property.set(2) : void(); });
  const auto later = property.observe(note("seen"));
  property.set(2);
  property.set(1);
  EXPECT_EQ(log, " store2 seen2 store1 store2 seen2 seen2");
}

TEST_F(ObservablePropertyTest, HandlersMayAddAndReleaseObserversWhileTheyAreTold) {
  ObservableProperty<int> property;
  std::optional<Disposable> own, others, added;
  // The text is used after the handler's own release, and too long to lie in the handler itself.
  own = property.observe([&, name = std::string(" a handler that releases itself ")](int value) {
    own.reset();
    others.reset();
    added = property.observe(note("added"));
    log += name + std::to_string(value);
  });
  others = property.observe(note("released"));
  const auto last = property.observe(note("last"));
  property.set(1);
  property.set(2);
  EXPECT_EQ(log, " a handler that releases itself 1 last1 last2 added2");
}

TEST_F(ObservablePropertyTest, TokensOutliveAPropertyThatAHandlerDestroys) {
  auto property = std::make_unique<ObservableProperty<int>>();
  const auto first = property->observe([&](int) { property.reset(); });
  const auto second = property->observe(note("seen"));
  property->set(1);
  EXPECT_EQ(log, " seen1");
}

using Dictionary = std::map<std::string, std::optional<std::string>>;

TEST(MinuteCounterTest, CountsTheLastSixtySecondsHoweverLongNobodyAsked) {
  using Seconds = std::chrono::duration<double>;
  const auto at = [](double seconds) {
    return MinuteCounter::Time(std::chrono::duration_cast<MinuteCounter::Time::duration>(Seconds(seconds)));
  };
  MinuteCounter counter;
  for (const double time : {1000.0, 1000.9, 1030.0}) {
    counter.add(at(time), 2);
  }
  EXPECT_EQ(counter.lastMinute(at(1059.9)), 6);
  EXPECT_EQ(counter.lastMinute(at(1060)), 2);
  counter.add(at(1060));
  EXPECT_EQ(counter.lastMinute(at(1090)), 1);
  EXPECT_EQ(counter.lastMinute(at(5000)), 0);
}

TEST(AppInfoTest, VersionsNeedBothTextsOfTheBundle) {
  const auto versions = [](const std::optional<std::string>& build) {
    const AppInfo info({{{"CFBundleShortVersionString", "3.0"}, {"CFBundleVersion", build}}, std::nullopt, {}});
    return info.version() + " " + info.displayVersion();
  };
  EXPECT_EQ(versions("112"), "3.0.112 3.0(112)");
  EXPECT_EQ(versions(std::nullopt), "1.0.0.0 1.0.0") << "a build number stored as a number has no text";
}

TEST(AppInfoTest, DirectoriesLieInTheContainerOrElseWithTheUserAndAreCreated) {
  using Kind = SearchPathDirectory;
  const TemporaryFolder folder;
  const std::string group = folder / "group";
  const Dictionary named{{"CFBundleIdentifier", "com.example.helper"}};
  const std::tuple<Dictionary, std::optional<std::string>, Kind, std::string> cases[] = {
      {named, group, Kind::applicationSupport, group + "/Application Support"},
      {named, group, Kind::other, group},
      {named, std::nullopt, Kind::applicationSupport, folder / "first/com.example.helper"},
      {{}, std::nullopt, Kind::caches, folder / "first/Quilex"},
      // A file in the way: nothing can be created, and the path is told all the same.
      {{}, folder.write("file"), Kind::caches, folder / "file/Caches"}};
  for (const auto& [dictionary, container, kind, expected] : cases) {
    const auto users = [&](Kind) { return std::vector<std::filesystem::path>{folder / "first", folder / "second"}; };
    const AppInfo info({dictionary, container, users});
    EXPECT_EQ(info.directory(kind), expected);
    EXPECT_EQ(std::filesystem::is_directory(expected), !expected.ends_with("file/Caches")) << expected;
  }
}

}  // namespace quilex::test
