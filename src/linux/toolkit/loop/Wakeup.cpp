#include "linux/toolkit/loop/Wakeup.h"

#include <sys/eventfd.h>

#include <cstdint>
#include <utility>

#include "base/FatalError.h"

namespace quilex {

Wakeup::Wakeup(std::function<void()> action) : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!event_.isOpen()) {
    fatalError("no event descriptor could be made");
  }
  notifier_ = std::make_unique<QSocketNotifier>(event_.get(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [descriptor = event_.get(), run = std::move(action)] {
                     std::uint64_t count = 0;
                     if (read(descriptor, &count, sizeof count) == sizeof count) {
                       run();
                     }
                   });
}

void Wakeup::signal() const {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(event_.get(), &one, sizeof one);
}

}  // namespace quilex
