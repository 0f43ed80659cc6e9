#include "linux/DisplayLoss.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>
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
    : server_(std::move(server)), connection_(fcntl(connection, F_DUPFD_CLOEXEC, 0)), lastSteps_(std::move(lastSteps)) {
  mainThread = std::this_thread::get_id();
  {
    const std::lock_guard lock(instanceMutex);
    instance = this;
  }
  // Any thread may log as soon as the handler is installed, so the handler before it must be known by then.
  otherMessages = qInstallMessageHandler(nullptr);
  qInstallMessageHandler(handleMessage);
  [[maybe_unused]] static const int registered = std::atexit(handleExit);
}

DisplayLoss::~DisplayLoss() {
  qInstallMessageHandler(otherMessages);
  const std::lock_guard lock(instanceMutex);
  instance = nullptr;
}

void DisplayLoss::end() {
  isEnding_ = true;
  EndDeadline::shared().begin(EXIT_FAILURE);
  std::fprintf(stderr, "quilexhelper: %s is gone\n", server_.c_str());
  lastSteps_();
  std::_Exit(EXIT_FAILURE);
}

bool DisplayLoss::isLost(int patience) {
  const std::lock_guard lock(instanceMutex);
  if (instance == nullptr) {
    return false;
  }
  pollfd connection{instance->connection_.get(), POLLRDHUP, 0};
  return poll(&connection, 1, patience) > 0;
}

// The caller is about to end the process.
void DisplayLoss::notice() {
  if (!isMainThread()) {
    // The main thread ends it instead: its own connection notices the loss as well, and there is the deadline.
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
  if (isAlarm(type, context) && isLost(kPatienceMilliseconds)) {
    notice();
  } else {
    otherMessages(type, context, text);
  }
}

void DisplayLoss::handleExit() {
  if (isLost(0)) {
    notice();
  } else if (isMainThread() && instance != nullptr && !instance->isEnding_) {
    instance->lastSteps_();
  }
}

}  // namespace quilex
