#pragma once

#include <functional>

#include "base/Disposable.h"
#include "linux/desktop/x11/X11Connection.h"

namespace quilex {

/// Notifies whenever the screen goes dark (true) or is lit again (false), and in the call if it is dark: the server's
/// screen saver runs, which it also does while DPMS has the monitors off. By the extension MIT-SCREEN-SAVER 1.1;
/// without it nothing is notified. The connection must outlive the token.
[[nodiscard]] Disposable watchScreenOff(X11Connection& x11, std::function<void(bool isOff)> handler);

}  // namespace quilex
