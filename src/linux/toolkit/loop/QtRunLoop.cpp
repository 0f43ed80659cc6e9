#include "linux/toolkit/loop/QtRunLoop.h"

#include <QTimer>
#include <memory>
#include <utility>

#include "linux/toolkit/loop/DeleteLater.h"

namespace quilex {

namespace {

Disposable start(std::chrono::milliseconds interval, bool once, std::function<void()> action) {
  // Deleted later, because the token may be released inside the timer's own action.
  const std::shared_ptr<QTimer> timer(new QTimer, DeleteLater());
  timer->setSingleShot(once);
  timer->setTimerType(Qt::CoarseTimer);
  QObject::connect(timer.get(), &QTimer::timeout, timer.get(), [run = std::move(action)] {
    const auto running = run;
    running();
  });
  timer->start(interval);
  return Disposable([timer] {
    timer->stop();
    timer->disconnect();
  });
}

}  // namespace

Disposable QtRunLoop::after(std::chrono::milliseconds delay, std::function<void()> action) {
  mainThread_.check();
  return start(delay, true, std::move(action));
}

Disposable QtRunLoop::every(std::chrono::milliseconds interval, std::function<void()> action) {
  mainThread_.check();
  return start(interval, false, std::move(action));
}

}  // namespace quilex
