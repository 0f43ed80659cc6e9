#pragma once

#ifndef NDEBUG
#include <thread>

#include "base/FatalError.h"
#endif

namespace quilex {

/// Remembers the thread that it was made on, for classes that belong to the main thread. In debug and sanitizer builds
/// `check` stops the process when it is called on another thread; in release builds it does nothing.
class MainThread {
 public:
#ifndef NDEBUG
  void check() const {
    if (std::this_thread::get_id() != id_) {
      fatalError("called off the main thread");
    }
  }

 private:
  std::thread::id id_ = std::this_thread::get_id();
#else
  void check() const {}
#endif
};

}  // namespace quilex
