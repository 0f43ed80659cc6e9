#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>

#include "linux/DisplayLoss.h"
#include "linux/toolkit/loop/EndDeadline.h"
#include "support/AdapterTest.h"

namespace quilex {

/// Each case runs in a process of its own, with a display server that may go away.
struct DisplayLossTest : ::testing::Test {
  DisplayLossTest() {
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
      std::fprintf(stderr, "toolkit: %s\n", text.toUtf8().constData());
    });
    loss.emplace("the server", ends[0], [] { std::fputs("last steps\n", stderr); });
  }
  ~DisplayLossTest() override {
    loss.reset();
    qInstallMessageHandler(nullptr);
    close(ends[0]);
    close(ends[1]);
  }
  template <typename Deed>
  void whenGone(const Deed& deed) {
    shutdown(ends[1], SHUT_RDWR);
    deed();
    _exit(9);
  }
  int ends[2] = {-1, -1};
  std::optional<DisplayLoss> loss;
  static constexpr auto kLoss = "^quilexhelper: the server is gone\nlast steps\n$";
};

TEST_F(DisplayLossTest, WhoeverNoticesTheLossFirstTheAgentEndsInOrder) {
  const auto failed = ::testing::ExitedWithCode(EXIT_FAILURE);
  EXPECT_EXIT(whenGone([&] { loss->end(); }), failed, kLoss) << "the agent";
  EXPECT_EXIT(whenGone([] { qWarning("The connection is broken."); }), failed, kLoss) << "the toolkit";
  EXPECT_EXIT(whenGone([] { std::exit(7); }), failed, kLoss) << "another library";
  EXPECT_EXIT(whenGone([] { waitFor([] { return false; }); }), failed, "^quilexhelper: the server is gone\n$")
      << "nobody";
  for (void (*const end)() : {+[] { qCritical("The connection is broken."); }, +[] { std::exit(7); }}) {
    EXPECT_EXIT(whenGone([&] {
                  const auto begun = EndDeadline::shared().observe([&] { loss->end(); });
                  std::thread([&] {
                    end();
                    _exit(8);
                  }).detach();
                  waitFor([] { return false; });
                }),
                failed, kLoss)
        << "either of them, in a thread of its own";
  }
}

TEST_F(DisplayLossTest, WhileTheServerIsThereLibrariesAreLeftAlone) {
  EXPECT_EXIT((qWarning("odd"), _exit(3)), ::testing::ExitedWithCode(3), "^toolkit: odd\n$");
  EXPECT_EXIT(std::exit(7), ::testing::ExitedWithCode(7), "^last steps\n$");
  EXPECT_EXIT((loss.reset(), whenGone([] { qWarning("late"); })), ::testing::ExitedWithCode(9), "^toolkit: late\n$");
}

}  // namespace quilex
