#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/ObserverList.h"
#include "linux/desktop/wayland/WaylandObject.h"
#include "linux/desktop/wayland/WaylandOutput.h"
#include "platform/WindowServer.h"

namespace quilex {

/// The agent's own connection to the Wayland compositor, with the parts of the desktop that it needs. Events are read
/// on the run loop. Main thread.
class WaylandConnection {
 public:
  /// Connects to $WAYLAND_DISPLAY; empty when there is no compositor, or it has no layer shell (wlr-layer-shell
  /// version 2) or lacks something else that a wallpaper needs; then `refusal` says what. Needs a QCoreApplication for
  /// events to arrive.
  static std::unique_ptr<WaylandConnection> open(std::string& refusal);
  ~WaylandConnection();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;

  /// Starts reading events; `lost` is called once when the compositor goes away.
  void start(std::function<void()> lost);
  /// Sends what was asked for; to be called at the end of whatever asks for something.
  void flush();

  wl_display* display() const { return connection_.get(); }
  wl_compositor* compositor() const { return globals_.compositor.get(); }
  wl_shm* sharedMemory() const { return globals_.sharedMemory.get(); }
  wp_viewporter* viewporter() const { return globals_.viewporter.get(); }
  zwlr_layer_shell_v1* layerShell() const { return globals_.layerShell.get(); }
  /// The first seat, which tells at once what it has; empty when there is none.
  WaylandObject<wl_seat> bindSeat();

  /// In the order in which they came.
  const std::vector<std::unique_ptr<WaylandOutput>>& outputs() const { return knownOutputs_; }
  /// The output that is that screen now; one of another name if it has come to stand in its place. Null if none has.
  const WaylandOutput* outputOf(const Screen& screen) const;
  /// The output of that name, or any if there is none. Null without outputs.
  const WaylandOutput* outputNamed(const std::string& name) const;
  /// Tells that outputs came, went or changed; for each of them.
  [[nodiscard]] Disposable observeOutputs(std::function<void()> handler) { return observers_.add(std::move(handler)); }

 private:
  struct Globals {
    WaylandObject<wl_compositor> compositor;
    WaylandObject<wl_shm> sharedMemory;
    WaylandObject<wp_viewporter> viewporter;
    WaylandObject<zwlr_layer_shell_v1> layerShell;
    WaylandObject<zxdg_output_manager_v1> outputManager;
  };
  static const wl_registry_listener registryListener;

  explicit WaylandConnection(wl_display* connected);
  /// What keeps it from being used; nothing when all is there.
  std::optional<std::string> setUp();
  void bind(std::uint32_t name, const char* interface, std::uint32_t version);
  void removed(std::uint32_t name);
  void drainEvents();
  void checkLost();

  WaylandObject<wl_display> connection_;
  WaylandObject<wl_registry> registry_;
  Globals globals_;
  std::uint32_t seatName_ = 0;
  std::vector<std::unique_ptr<WaylandOutput>> knownOutputs_;
  ObserverList<> observers_;
  std::function<void()> compositorLost_;
  std::unique_ptr<QSocketNotifier> readable_;
  std::unique_ptr<QSocketNotifier> writable_;
};

}  // namespace quilex
