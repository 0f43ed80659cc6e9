#include "linux/qt/TerminationSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <memory>
#include <utility>

#include "linux/qt/Wakeup.h"

namespace quilex {

namespace {

// A signal handler reaches nothing but globals.
const Wakeup* receiver = nullptr;

void handle(int /*signal*/) {
  const int before = errno;
  if (receiver != nullptr) {
    receiver->signal();
  }
  errno = before;
}

}  // namespace

Disposable observeTerminationSignals(std::function<void()> action) {
  auto wakeup = std::make_shared<Wakeup>(std::move(action));
  receiver = wakeup.get();
  struct Saved {
    int signal;
    struct sigaction action;
  };
  std::array<Saved, 3> saved{{{SIGTERM, {}}, {SIGINT, {}}, {SIGHUP, {}}}};
  for (Saved& each : saved) {
    struct sigaction handler = {};
    handler.sa_handler = handle;
    handler.sa_flags = SA_RESTART;
    sigaction(each.signal, &handler, &each.action);
  }
  return Disposable([wakeup, saved] {
    for (const Saved& each : saved) {
      sigaction(each.signal, &each.action, nullptr);
    }
    receiver = nullptr;
  });
}

}  // namespace quilex
