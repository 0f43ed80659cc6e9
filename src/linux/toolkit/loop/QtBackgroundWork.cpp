#include "linux/toolkit/loop/QtBackgroundWork.h"

#include <QFutureWatcher>
#include <QPromise>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "linux/toolkit/loop/DeleteLater.h"

namespace quilex {

/// Counts the threads that are running.
struct QtBackgroundWork::Threads {
  std::mutex mutex;
  std::condition_variable ended;
  int running = 0;

  void count(int change) {
    const std::lock_guard lock(mutex);
    running += change;
    ended.notify_all();
  }
  void await(std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex);
    ended.wait_for(lock, longest, [this] { return running == 0; });
  }
};

QtBackgroundWork::QtBackgroundWork(std::chrono::milliseconds lastWait)
    : threads_(std::make_shared<Threads>()), lastWait_(lastWait) {}

QtBackgroundWork::~QtBackgroundWork() {
  threads_->await(lastWait_);
}

Disposable QtBackgroundWork::run(Work work, std::function<void()> done) {
  mainThread_.check();
  const auto promise = std::make_shared<QPromise<void>>();
  // Deleted later, because the token may be released inside `done`.
  const std::shared_ptr<QFutureWatcher<void>> watcher(new QFutureWatcher<void>, DeleteLater());
  QObject::connect(watcher.get(), &QFutureWatcherBase::finished, watcher.get(), [finish = std::move(done)] {
    const auto finishing = finish;
    finishing();
  });
  promise->start();
  watcher->setFuture(promise->future());
  const std::stop_source stop;
  threads_->count(1);
  std::thread([promise, work = std::move(work), stop = stop.get_token(), threads = threads_]() mutable {
    std::exchange(work, {})(stop);
    promise->finish();
    threads->count(-1);
  }).detach();
  return Disposable([watcher, stop]() mutable {
    stop.request_stop();
    watcher->disconnect();
  });
}

}  // namespace quilex
