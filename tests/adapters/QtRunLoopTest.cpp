#include <csignal>
#include <memory>
#include <optional>
#include <thread>

#include "linux/qt/QtRunLoop.h"
#include "linux/qt/TerminationSignals.h"
#include "linux/qt/Wakeup.h"
#include "support/AdapterTest.h"

namespace quilex {

using namespace std::chrono_literals;

// Long enough for everything that was due when it was called.
void turn(QtRunLoop& loop) {
  int ticks = 0;
  const auto clock = loop.every(2ms, [&] { ++ticks; });
  EXPECT_TRUE(waitFor([&] { return ticks >= 5; }));
}

TEST(QtRunLoopTest, ActionsRunLaterAndNotAfterTheirTokenIsReleased) {
  QtRunLoop loop;
  int once = 0;
  int released = 0;
  int inside = 0;
  const auto token = loop.after(0ms, [&] { ++once; });
  {
    const auto gone = loop.after(0ms, [&] { ++released; });
  }
  std::optional<Disposable> timer;
  // The action's captures must outlive the release of its token.
  timer = loop.every(1ms, [&, one = std::make_shared<int>(1)] {
    timer.reset();
    inside += *one;
  });
  EXPECT_EQ(once, 0);
  turn(loop);
  EXPECT_EQ(once, 1);
  EXPECT_EQ(released, 0);
  EXPECT_EQ(inside, 1);
}

TEST(WakeupTest, SignalsFromAnyThreadEndInARunAndNoneRunsAfterItsEnd) {
  QtRunLoop loop;
  int runs = 0;
  auto wakeup = std::make_unique<Wakeup>([&] { ++runs; });
  std::thread([&] {
    for (int count = 0; count < 1000; ++count) {
      wakeup->signal();
    }
  }).join();
  EXPECT_EQ(runs, 0);
  turn(loop);
  EXPECT_EQ(runs, 1);
  wakeup->signal();
  wakeup.reset();
  turn(loop);
  EXPECT_EQ(runs, 1);
}

TEST(TerminationSignalsTest, RunTheActionInTheLoopUntilReleased) {
  static volatile std::sig_atomic_t own = 0;
  std::signal(SIGTERM, [](int) { own = own + 1; });
  int runs = 0;
  {
    const auto token = observeTerminationSignals([&] { ++runs; });
    int expected = 0;
    for (const int each : {SIGTERM, SIGINT, SIGHUP}) {
      std::raise(each);
      EXPECT_EQ(runs, expected);
      EXPECT_TRUE(waitFor([&] { return runs == expected + 1; })) << each;
      ++expected;
    }
  }
  std::raise(SIGTERM);
  EXPECT_EQ(own, 1);
  std::signal(SIGTERM, SIG_DFL);
}

}  // namespace quilex
