#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/ObserverList.h"
#include "base/Result.h"
#include "linux/desktop/wayland/WaylandObject.h"
#include "linux/desktop/wayland/WaylandOutput.h"
#include "platform/WindowServer.h"

namespace quilex {

/// The agent's own connection to the Wayland compositor, with the globals that it needs. Events are read on the run
/// loop. Main thread.
class WaylandConnection {
 public:
  /// Connects to $WAYLAND_DISPLAY. Fails when there is no compositor, or it has no layer shell (wlr-layer-shell
  /// version 2) or lacks something else that a wallpaper needs. Needs a QCoreApplication for events to arrive.
  static Result<std::unique_ptr<WaylandConnection>> open();
  ~WaylandConnection();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;

  /// Starts reading events; `lost` is called once when the compositor goes away.
  void start(std::function<void()> lost);
  /// Sends all requests; to be called after making some.
  void flush();

  wl_display* display() const { return display_.get(); }
  wl_compositor* compositor() const { return globals_.compositor.get(); }
  wl_shm* sharedMemory() const { return globals_.sharedMemory.get(); }
  wp_viewporter* viewporter() const { return globals_.viewporter.get(); }
  zwlr_layer_shell_v1* layerShell() const { return globals_.layerShell.get(); }
  /// For popups; null if the compositor has none.
  xdg_wm_base* shell() const { return globals_.shell.get(); }
  /// Whether it is KWin, with the extension for Plasma's own windows.
  bool isPlasma() const { return hasPlasmaShell_; }
  /// The first seat, which then announces what it has; empty when there is none.
  WaylandObject<wl_seat> bindSeat();

  /// In the order in which they came.
  const std::vector<std::unique_ptr<WaylandOutput>>& outputs() const { return knownOutputs_; }
  /// The output at the place of that screen: the one with its name, else any. Null when there is none.
  const WaylandOutput* outputOf(const Screen& screen) const;
  /// The output with that name, else any. Null without outputs.
  const WaylandOutput* outputNamed(const std::string& name) const;
  /// Notifies once for each output that appears, goes or changes.
  [[nodiscard]] Disposable observeOutputs(std::function<void()> handler) { return observers_.add(std::move(handler)); }

 private:
  struct Globals {
    WaylandObject<wl_compositor> compositor;
    WaylandObject<wl_shm> sharedMemory;
    WaylandObject<wp_viewporter> viewporter;
    WaylandObject<zwlr_layer_shell_v1> layerShell;
    WaylandObject<zxdg_output_manager_v1> outputManager;
    WaylandObject<xdg_wm_base> shell;
  };
  static const wl_registry_listener registryListener;
  static const xdg_wm_base_listener shellListener;

  explicit WaylandConnection(WaylandObject<wl_display> display);
  /// Fails when the compositor lacks something.
  Outcome setUp();
  void bind(std::uint32_t name, const char* interface, std::uint32_t version);
  void removed(std::uint32_t name);
  void drainEvents();
  void checkLost();

  WaylandObject<wl_display> display_;
  WaylandObject<wl_registry> registry_;
  Globals globals_;
  std::uint32_t seatName_ = 0;
  bool hasPlasmaShell_ = false;
  std::vector<std::unique_ptr<WaylandOutput>> knownOutputs_;
  ObserverList<> observers_;
  std::function<void()> compositorLost_;
  std::unique_ptr<QSocketNotifier> readable_;
  std::unique_ptr<QSocketNotifier> writable_;
};

}  // namespace quilex
