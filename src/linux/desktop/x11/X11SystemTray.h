#pragma once

#include <functional>

#include "linux/desktop/x11/X11Connection.h"

namespace quilex {

/// Whether a tray manager runs on the screen (System Tray Protocol Specification 0.3).
class X11SystemTray {
 public:
  /// The connection must outlive the instance.
  explicit X11SystemTray(X11Connection& x11);

  bool isPresent() const;
  /// Notifies each time a manager appears.
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers_.add(std::move(handler)); }

 private:
  X11Connection& x11_;
  ObserverList<> observers_;
  Disposable events_;
};

}  // namespace quilex
