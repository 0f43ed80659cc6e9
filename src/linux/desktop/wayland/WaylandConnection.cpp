#include "linux/desktop/wayland/WaylandConnection.h"

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

namespace quilex {

namespace {

constexpr std::uint32_t kSeatVersion = 5;

/// Binds the global at the version that both sides know.
template <typename Object>
void bindTo(Object& object, wl_registry* registry, std::uint32_t name, const wl_interface& interface,
            std::uint32_t offered, std::uint32_t known) {
  object.reset(
      static_cast<typename Object::pointer>(wl_registry_bind(registry, name, &interface, std::min(offered, known))));
}

}  // namespace

const wl_registry_listener WaylandConnection::registryListener = {
    .global = [](void* data, wl_registry*, std::uint32_t name, const char* interface,
                 std::uint32_t version) { static_cast<WaylandConnection*>(data)->bind(name, interface, version); },
    .global_remove = [](void* data, wl_registry*,
                        std::uint32_t name) { static_cast<WaylandConnection*>(data)->removed(name); },
};

const xdg_wm_base_listener WaylandConnection::shellListener = {
    .ping = [](void*, xdg_wm_base* shell, std::uint32_t serial) { xdg_wm_base_pong(shell, serial); },
};

Result<std::unique_ptr<WaylandConnection>> WaylandConnection::open() {
  WaylandObject<wl_display> display(wl_display_connect(nullptr));
  if (!display) {
    return failed("there is no compositor at WAYLAND_DISPLAY");
  }
  std::unique_ptr<WaylandConnection> opened(new WaylandConnection(std::move(display)));
  if (auto ready = opened->setUp(); !ready) {
    return failed(std::move(ready.error()));
  }
  return opened;
}

WaylandConnection::WaylandConnection(WaylandObject<wl_display> display)
    : display_(std::move(display)), registry_(wl_display_get_registry(display_.get())) {
  wl_registry_add_listener(registry_.get(), &registryListener, this);
}

WaylandConnection::~WaylandConnection() = default;

Outcome WaylandConnection::setUp() {
  // Once for the globals, and once for the outputs' descriptions.
  for (int i = 0; i < 2; ++i) {
    if (wl_display_roundtrip(display()) < 0) {
      return failed("the compositor ends the connection");
    }
  }
  constexpr std::uint32_t kBufferDamage = WL_SURFACE_DAMAGE_BUFFER_SINCE_VERSION;
  if (!globals_.layerShell ||
      zwlr_layer_shell_v1_get_version(layerShell()) < ZWLR_LAYER_SURFACE_V1_SET_LAYER_SINCE_VERSION) {
    return failed("the compositor has no layer shell (wlr-layer-shell, version 2)");
  }
  if (!globals_.compositor || wl_compositor_get_version(compositor()) < kBufferDamage || !globals_.sharedMemory ||
      !globals_.viewporter) {
    return failed("the compositor lacks wl_compositor 4, wl_shm or wp_viewporter");
  }
  return {};
}

void WaylandConnection::bind(std::uint32_t name, const char* interface, std::uint32_t version) {
  const auto take = [&](auto& object, const wl_interface& known, std::uint32_t most) {
    const bool isIt = std::string_view(interface) == known.name;
    if (isIt && !object) {
      bindTo(object, registry_.get(), name, known, version, most);
    }
    return isIt;
  };
  take(globals_.compositor, wl_compositor_interface, 4);
  take(globals_.sharedMemory, wl_shm_interface, 1);
  take(globals_.viewporter, wp_viewporter_interface, 1);
  take(globals_.layerShell, zwlr_layer_shell_v1_interface, 4);
  if (take(globals_.shell, xdg_wm_base_interface, 1)) {
    xdg_wm_base_add_listener(globals_.shell.get(), &shellListener, this);
  }
  if (take(globals_.outputManager, zxdg_output_manager_v1_interface, 3)) {
    for (const auto& output : knownOutputs_) {
      output->locate(globals_.outputManager.get());
    }
  }
  hasPlasmaShell_ = hasPlasmaShell_ || std::string_view(interface) == "org_kde_plasma_shell";
  if (std::string_view(interface) == wl_seat_interface.name && version >= kSeatVersion && seatName_ == 0) {
    seatName_ = name;
  }
  if (std::string_view(interface) == wl_output_interface.name && version >= WL_OUTPUT_RELEASE_SINCE_VERSION) {
    WaylandObject<wl_output> output;
    bindTo(output, registry_.get(), name, wl_output_interface, version, 4);
    knownOutputs_.push_back(std::make_unique<WaylandOutput>(name, std::move(output), [this] { observers_.notify(); }));
    knownOutputs_.back()->locate(globals_.outputManager.get());
  }
}

WaylandObject<wl_seat> WaylandConnection::bindSeat() {
  WaylandObject<wl_seat> seat;
  if (seatName_ != 0) {
    bindTo(seat, registry_.get(), seatName_, wl_seat_interface, kSeatVersion, kSeatVersion);
  }
  return seat;
}

const WaylandOutput* WaylandConnection::outputOf(const Screen& screen) const {
  const WaylandOutput* found = nullptr;
  for (const auto& output : knownOutputs_) {
    if (output->isKnown() && output->place() == screen.frame && (found == nullptr || output->name() == screen.name)) {
      found = output.get();
    }
  }
  return found;
}

const WaylandOutput* WaylandConnection::outputNamed(const std::string& name) const {
  const WaylandOutput* found = nullptr;
  for (const auto& output : knownOutputs_) {
    if (output->isKnown() && (found == nullptr || output->name() == name)) {
      found = output.get();
    }
  }
  return found;
}

void WaylandConnection::removed(std::uint32_t name) {
  if (std::erase_if(knownOutputs_, [&](const auto& output) { return output->global() == name; }) > 0) {
    observers_.notify();
  }
}

void WaylandConnection::start(std::function<void()> lost) {
  compositorLost_ = std::move(lost);
  const int descriptor = wl_display_get_fd(display());
  readable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(), [this] { drainEvents(); });
  writable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
  writable_->setEnabled(false);
  QObject::connect(writable_.get(), &QSocketNotifier::activated, writable_.get(), [this] { flush(); });
  // Handles what was read before there was a notifier, or by EGL, which reads from the connection too.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, readable_.get(),
                   [this] {
                     wl_display_dispatch_pending(display());
                     flush();
                   });
}

// A plain dispatch could wait for an event that EGL has read already.
void WaylandConnection::drainEvents() {
  while (wl_display_prepare_read(display()) != 0) {
    // After an error nothing is dispatched any more, so that the queue never gets empty.
    if (wl_display_dispatch_pending(display()) < 0) {
      checkLost();
      return;
    }
  }
  wl_display_read_events(display());
  wl_display_dispatch_pending(display());
  flush();
}

void WaylandConnection::flush() {
  const bool full = wl_display_flush(display()) < 0 && errno == EAGAIN;
  if (writable_) {
    writable_->setEnabled(full);
    checkLost();
  }
}

void WaylandConnection::checkLost() {
  if (wl_display_get_error(display()) != 0 && compositorLost_) {
    readable_->setEnabled(false);
    writable_->setEnabled(false);
    std::exchange(compositorLost_, {})();
  }
}

}  // namespace quilex
