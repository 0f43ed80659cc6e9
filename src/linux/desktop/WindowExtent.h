#pragma once

namespace quilex {

/// How large an ordinary window is on its monitor. A full-screen window counts as a maximised one too.
enum class WindowExtent { fullScreen, maximized };

}  // namespace quilex
