#include "linux/desktop/x11/X11DesktopWatcher.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <utility>

namespace quilex {

X11DesktopWatcher::X11DesktopWatcher(std::function<void()> changed, std::function<void(const DesktopPress&)> pressed)
    : changed_(std::move(changed)),
      pressed_(std::move(pressed)),
      wakeup_([this] { deliver(); }),
      stop_(eventfd(0, EFD_CLOEXEC)),
      thread_([this] { watch(); }) {}

X11DesktopWatcher::~X11DesktopWatcher() {
  eventfd_write(stop_.get(), 1);
  thread_.join();
}

void X11DesktopWatcher::watch() {
  IconReader reader([this](const IconLayer& seen) { publish(seen); },
                    [this](const DesktopPress& press) { publish(press); });
  if (!reader.isConnected()) {
    return;
  }
  std::array polled{pollfd{reader.connection(), POLLIN, 0}, pollfd{stop_.get(), POLLIN, 0}};
  while (polled[1].revents == 0 && reader.advance()) {
    poll(polled.data(), polled.size(), reader.patience());
  }
}

void X11DesktopWatcher::publish(const IconLayer& seen) {
  {
    const std::lock_guard lock(mutex_);
    seen_ = seen;
  }
  wakeup_.signal();
}

void X11DesktopWatcher::publish(const DesktopPress& press) {
  {
    const std::lock_guard lock(mutex_);
    presses_.push_back(press);
  }
  wakeup_.signal();
}

void X11DesktopWatcher::deliver() {
  std::vector<DesktopPress> presses;
  bool isChanged = false;
  {
    const std::lock_guard lock(mutex_);
    presses = std::exchange(presses_, {});
    isChanged = icons_ != seen_;
    icons_ = seen_;
  }
  if (isChanged) {
    changed_();
  }
  for (const DesktopPress& press : presses) {
    pressed_(press);
  }
}

}  // namespace quilex
