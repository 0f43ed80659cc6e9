#include "linux/desktop/wayland/WaylandToplevels.h"

#include <wlr-foreign-toplevel-management-unstable-v1.h>

#include <algorithm>
#include <cstring>
#include <list>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/desktop/wayland/WaylandObject.h"

namespace quilex {

namespace {

struct ToplevelDestroyer {
  void operator()(zwlr_foreign_toplevel_manager_v1* object) const {
    zwlr_foreign_toplevel_manager_v1_stop(object);
    zwlr_foreign_toplevel_manager_v1_destroy(object);
  }
  void operator()(zwlr_foreign_toplevel_handle_v1* object) const { zwlr_foreign_toplevel_handle_v1_destroy(object); }
};

template <typename Type>
using Owned = std::unique_ptr<Type, ToplevelDestroyer>;

class Toplevels {
 public:
  Toplevels(WaylandConnection& connection, WindowExtent extent, StandstillReason::Handler handler)
      : connection_(connection),
        extent_(extent),
        handler_(std::move(handler)),
        registry_(wl_display_get_registry(connection.display())) {
    wl_registry_add_listener(registry_.get(), &registryListener, this);
    connection.flush();
  }
  ~Toplevels() {
    windows_.clear();
    manager_.reset();
    registry_.reset();
    connection_.flush();
  }
  Toplevels(const Toplevels&) = delete;
  Toplevels& operator=(const Toplevels&) = delete;

 private:
  struct Window {
    Toplevels* owner;
    Owned<zwlr_foreign_toplevel_handle_v1> handle;
    bool isLarge = false;
  };
  static const wl_registry_listener registryListener;
  static const zwlr_foreign_toplevel_manager_v1_listener managerListener;
  static const zwlr_foreign_toplevel_handle_v1_listener handleListener;

  void bind(std::uint32_t name, const char* interface) {
    if (std::string_view(interface) == zwlr_foreign_toplevel_manager_v1_interface.name && !manager_) {
      // Version 2 has the state of being full-screen.
      manager_.reset(static_cast<zwlr_foreign_toplevel_manager_v1*>(
          wl_registry_bind(registry_.get(), name, &zwlr_foreign_toplevel_manager_v1_interface, 2)));
      zwlr_foreign_toplevel_manager_v1_add_listener(manager_.get(), &managerListener, this);
      connection_.flush();
    }
  }

  void add(zwlr_foreign_toplevel_handle_v1* handle) {
    windows_.push_back({this, Owned<zwlr_foreign_toplevel_handle_v1>(handle)});
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &handleListener, &windows_.back());
  }

  bool isLarge(const wl_array& states) const {
    std::vector<std::uint32_t> all(states.size / sizeof(std::uint32_t));
    std::memcpy(all.data(), states.data, all.size() * sizeof(std::uint32_t));
    const auto has = [&](std::uint32_t state) { return std::ranges::count(all, state) > 0; };
    return !has(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MINIMIZED) &&
           (has(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_FULLSCREEN) ||
            (extent_ == WindowExtent::maximized && has(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MAXIMIZED)));
  }

  void remove(Window& closed) {
    windows_.remove_if([&](const Window& window) { return &window == &closed; });
    update();
  }

  void update() {
    const bool now = std::ranges::any_of(windows_, &Window::isLarge);
    if (std::exchange(isAny_, now) != now) {
      // The handler may release the token and with it this object.
      const auto running = handler_;
      running(now);
    }
  }

  WaylandConnection& connection_;
  WindowExtent extent_;
  StandstillReason::Handler handler_;
  WaylandObject<wl_registry> registry_;
  Owned<zwlr_foreign_toplevel_manager_v1> manager_;
  /// Never moved, since the listeners point to them.
  std::list<Window> windows_;
  bool isAny_ = false;
};

const wl_registry_listener Toplevels::registryListener = {
    .global = [](void* data, wl_registry*, std::uint32_t name, const char* interface,
                 std::uint32_t) { listener<Toplevels>(data).bind(name, interface); },
    .global_remove = [](void*, wl_registry*, std::uint32_t) {},
};

const zwlr_foreign_toplevel_manager_v1_listener Toplevels::managerListener = {
    .toplevel = [](void* data, zwlr_foreign_toplevel_manager_v1*,
                   zwlr_foreign_toplevel_handle_v1* handle) { listener<Toplevels>(data).add(handle); },
    .finished = [](void*, zwlr_foreign_toplevel_manager_v1*) {},
};

const zwlr_foreign_toplevel_handle_v1_listener Toplevels::handleListener = {
    .title = [](void*, zwlr_foreign_toplevel_handle_v1*, const char*) {},
    .app_id = [](void*, zwlr_foreign_toplevel_handle_v1*, const char*) {},
    .output_enter = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
    .output_leave = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
    .state =
        [](void* data, zwlr_foreign_toplevel_handle_v1*, wl_array* states) {
          auto& window = listener<Window>(data);
          window.isLarge = window.owner->isLarge(*states);
        },
    .done = [](void* data, zwlr_foreign_toplevel_handle_v1*) { listener<Window>(data).owner->update(); },
    .closed =
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {
          auto& window = listener<Window>(data);
          window.owner->remove(window);
        },
    .parent = [](void*, zwlr_foreign_toplevel_handle_v1*, zwlr_foreign_toplevel_handle_v1*) {},
};

}  // namespace

Disposable watchToplevels(WaylandConnection& connection, WindowExtent extent, StandstillReason::Handler handler) {
  auto watch = std::make_shared<Toplevels>(connection, extent, std::move(handler));
  return Disposable([watch = std::move(watch)]() mutable { watch.reset(); });
}

}  // namespace quilex
