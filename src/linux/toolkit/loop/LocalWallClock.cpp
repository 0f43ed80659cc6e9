#include "linux/toolkit/loop/LocalWallClock.h"

#include <sys/timerfd.h>

#include <QDateTime>
#include <QSocketNotifier>
#include <algorithm>
#include <cstdint>
#include <ctime>
#include <memory>
#include <utility>

#include "base/FatalError.h"
#include "linux/toolkit/loop/DeleteLater.h"
#include "linux/toolkit/loop/FileDescriptor.h"

namespace quilex {

namespace {

using namespace std::chrono_literals;

QDateTime dateTime(WallClock::Time time) {
  // The time zone may have changed since the last call.
  tzset();
  return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
}

WallClock::Time timeOf(const QDateTime& time) {
  return WallClock::Time(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

struct Alarm {
  FileDescriptor timer;
  std::unique_ptr<QSocketNotifier, DeleteLater> notifier;
};

}  // namespace

WallClock::Time LocalWallClock::now() const {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

WallClock::Time LocalWallClock::startOfDay(Time time) const {
  return timeOf(dateTime(time).date().startOfDay());
}

std::optional<WallClock::Time> LocalWallClock::addingOneDay(Time time) const {
  const QDateTime next = dateTime(time).addDays(1);
  return next.isValid() ? std::optional(timeOf(next)) : std::nullopt;
}

Disposable LocalWallClock::at(Time date, std::function<void()> action) {
  // A timer on this clock also follows suspends and changes of the clock.
  const auto alarm = std::make_shared<Alarm>();
  alarm->timer = FileDescriptor(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK));
  // Zero would disarm the timer. Any time in the past is as good.
  date = std::max(date, Time(1ms));
  const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
  itimerspec expiry{};
  expiry.it_value = {seconds.time_since_epoch().count(), std::chrono::nanoseconds(date - seconds).count()};
  if (timerfd_settime(alarm->timer.get(), TFD_TIMER_ABSTIME, &expiry, nullptr) != 0) {
    fatalError("no wall-clock timer could be made");
  }
  alarm->notifier.reset(new QSocketNotifier(alarm->timer.get(), QSocketNotifier::Read));
  QObject::connect(alarm->notifier.get(), &QSocketNotifier::activated, alarm->notifier.get(),
                   [weak = std::weak_ptr(alarm), run = std::move(action)] {
                     if (const auto fired = weak.lock()) {
                       // The action may release the token, but the notifier must live until its signal returns.
                       fired->notifier->setEnabled(false);
                       const auto running = run;
                       running();
                     }
                   });
  return Disposable([alarm] {
    alarm->notifier->disconnect();
    alarm->notifier->setEnabled(false);
    alarm->notifier.reset();
    alarm->timer = FileDescriptor();
  });
}

}  // namespace quilex
