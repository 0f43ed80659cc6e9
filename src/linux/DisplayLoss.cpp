#include "linux/DisplayLoss.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "linux/toolkit/loop/EndDeadline.h"

namespace quilex {

namespace {

// A server that dies closes its connections one after another, and ours may be among the last.
constexpr int kPatienceMilliseconds = 100;

// Handlers of messages and of exit reach nothing but globals. The mutex keeps the object while another thread uses it.
std::mutex instanceMutex;
DisplayLoss* instance = nullptr;
QtMessageHandler otherMessages = nullptr;
std::thread::id mainThread;

bool isMainThread() {
  return std::this_thread::get_id() == mainThread;
}

/// A warning or worse that is not the agent's own.
bool isAlarm(QtMsgType type, const QMessageLogContext& context) {
  return type != QtDebugMsg && type != QtInfoMsg && qstrncmp(context.category, "quilex.", 7) != 0;
}

}  // namespace

DisplayLoss::DisplayLoss(std::string server, int connection, std::function<void()> lastSteps)
    : server_(std::move(server)),
      connection_(connection),
      lastSteps_(std::move(lastSteps)),
      stop_(eventfd(0, EFD_CLOEXEC)) {
  mainThread = std::this_thread::get_id();
  {
    const std::lock_guard lock(instanceMutex);
    instance = this;
  }
  // Any thread may log as soon as the handler is installed, so the handler before it must be known by then.
  otherMessages = qInstallMessageHandler(nullptr);
  qInstallMessageHandler(handleMessage);
  [[maybe_unused]] static const int registered = std::atexit(handleExit);
  watcher_ = std::thread([this] { watch(); });
}

DisplayLoss::~DisplayLoss() {
  eventfd_write(stop_.get(), 1);
  watcher_.join();
  qInstallMessageHandler(otherMessages);
  const std::lock_guard lock(instanceMutex);
  instance = nullptr;
}

void DisplayLoss::end() {
  isEnding_ = true;
  EndDeadline::shared().begin(EXIT_FAILURE);
  report();
  lastSteps_();
  std::_Exit(EXIT_FAILURE);
}

std::optional<bool> DisplayLoss::isLost() {
  const std::lock_guard lock(instanceMutex);
  if (instance == nullptr) {
    return std::nullopt;
  }
  pollfd connection{instance->connection_, POLLRDHUP, 0};
  return poll(&connection, 1, kPatienceMilliseconds) > 0;
}

void DisplayLoss::report() {
  if (!isReported_.test_and_set()) {
    std::fprintf(stderr, "quilexhelper: %s is gone\n", server_.c_str());
  }
}

void DisplayLoss::watch() {
  std::array polled{pollfd{connection_, POLLRDHUP, 0}, pollfd{stop_.get(), POLLIN, 0}};
  while (poll(polled.data(), polled.size(), -1) < 0) {
  }
  if (polled[1].revents == 0) {
    report();
    EndDeadline::shared().begin(EXIT_FAILURE);
  }
}

// The caller is about to end the process.
void DisplayLoss::notice() {
  if (!isMainThread()) {
    // The main thread ends it instead, in order or with the deadline.
    EndDeadline::shared().begin(EXIT_FAILURE);
    for (;;) {
      pause();
    }
  }
  if (!instance->isEnding_) {
    instance->end();
  }
}

void DisplayLoss::handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (isAlarm(type, context) && isLost().value_or(false)) {
    notice();
  } else {
    otherMessages(type, context, text);
  }
}

void DisplayLoss::handleExit() {
  const auto lost = isLost();
  if (!lost) {
    return;
  }
  EndDeadline::shared().begin(EXIT_FAILURE);
  // Another thread must not destroy static objects while the main thread uses them.
  if (*lost || !isMainThread()) {
    notice();
  } else if (!instance->isEnding_) {
    instance->lastSteps_();
  }
}

}  // namespace quilex
