#include "linux/AgentLife.h"

#include <QCoreApplication>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "linux/Composition.h"
#include "linux/DisplayLoss.h"
#include "linux/session/dbus/BusConnection.h"
#include "linux/toolkit/loop/EndDeadline.h"

namespace quilex {

int runAgent(std::unique_ptr<Desktop> desktop, std::string backendReason) {
  EndDeadline& deadline = EndDeadline::shared();
  Composition* running = nullptr;
  // The main application is notified once: by the delegate or, while the main thread hangs, from another thread.
  std::atomic<bool> isNotified = false;
  const auto endInOrder = [&] {
    if (Composition* const ended = std::exchange(running, nullptr)) {
      if (!isNotified.exchange(true)) {
        ended->delegate.applicationWillTerminate();
      }
      ended->writeSettings();
    }
  };
  DisplayLoss displayLoss(desktop->serverName(), desktop->connection(), endInOrder);
  const auto made = Composition::make(*desktop, std::move(backendReason), [&displayLoss] { displayLoss.end(); });
  if (!made) {
    std::fprintf(stderr, "quilexhelper: %s\n", made.error().message.c_str());
    return EXIT_FAILURE;
  }
  Composition& composition = **made;
  running = &composition;
  const auto lastPost = deadline.addLastAction([&isNotified] {
    if (!isNotified.exchange(true)) {
      postSeparately(AppDelegate::kTermination, EndDeadline::kLastActions);
    }
  });
  const auto lastWriting = deadline.addLastAction([&composition] { composition.writeSettings(); });

  composition.delegate.applicationDidFinishLaunching();
  QCoreApplication::exec();
  if (deadline.begin(EXIT_SUCCESS) != EXIT_SUCCESS) {
    displayLoss.end();
  }
  endInOrder();
  return EXIT_SUCCESS;
}

}  // namespace quilex
