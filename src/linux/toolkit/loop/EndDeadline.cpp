#include "linux/toolkit/loop/EndDeadline.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

#include "base/FatalError.h"

namespace quilex {

namespace {

constexpr int kNotGiven = -1;

// A signal handler can only reach globals.
int eventOfSignals = -1;

void notify(int event) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(event, &one, sizeof one);
}

void handle(int /*signal*/) {
  const int before = errno;
  notify(eventOfSignals);
  errno = before;
}

}  // namespace

EndDeadline& EndDeadline::shared() {
  // Never destroyed, because the destructors of static objects may hang too.
  static auto* const one = new EndDeadline;
  return *one;
}

EndDeadline::EndDeadline() : event_(eventfd(0, EFD_CLOEXEC)), exitStatus_(kNotGiven) {
  if (!event_.isOpen()) {
    fatalError("no event descriptor could be made");
  }
  eventOfSignals = event_.get();
  std::thread([this] { watch(); }).detach();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction handler = {};
    handler.sa_handler = handle;
    handler.sa_flags = SA_RESTART;
    sigaction(signal, &handler, nullptr);
  }
}

Disposable EndDeadline::observe(std::function<void()> action) {
  const std::lock_guard lock(observing_);
  observer_ = std::make_unique<Wakeup>(std::move(action));
  if (begun_) {
    observer_->signal();
  }
  return Disposable([this] {
    const std::lock_guard releasing(observing_);
    observer_.reset();
  });
}

Disposable EndDeadline::addLastAction(std::function<void()> action) {
  const std::lock_guard lock(ending_);
  const auto place = lastActions_.insert(lastActions_.end(), std::move(action));
  return Disposable([this, place] {
    const std::lock_guard releasing(ending_);
    lastActions_.erase(place);
  });
}

int EndDeadline::begin(int status) {
  int given = kNotGiven;
  exitStatus_.compare_exchange_strong(given, status);
  notify(event_.get());
  return given == kNotGiven ? status : given;
}

void EndDeadline::watch() {
  std::uint64_t count = 0;
  while (read(event_.get(), &count, sizeof count) != sizeof count) {
  }
  {
    const std::lock_guard lock(observing_);
    begun_ = true;
    if (observer_) {
      observer_->signal();
    }
  }
  std::this_thread::sleep_for(kOrderlyEnd);
  end();
}

void EndDeadline::end() {
  // Never unlocked, so that nothing an action uses is destroyed.
  ending_.lock();
  const auto latest = std::chrono::steady_clock::now() + kLastActions;
  // Shared, because the threads may outlive this function.
  const auto left = std::make_shared<std::atomic<std::size_t>>(lastActions_.size());
  for (const auto& action : lastActions_) {
    std::thread([&action, left] {
      action();
      --*left;
    }).detach();
  }
  while (*left > 0 && std::chrono::steady_clock::now() < latest) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  int status = EXIT_SUCCESS;
  if (exitStatus_ != kNotGiven) {
    status = exitStatus_;
  }
  _exit(status);
}

}  // namespace quilex
