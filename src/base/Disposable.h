#pragma once

#include <functional>

namespace quilex {

/// A token for something that has to be ended, such as an observation. Destroying it runs its closure exactly once;
/// the closure cannot be run earlier or cancelled. A moved-from token holds nothing.
class [[nodiscard]] Disposable {
 public:
  Disposable() = delete;
  /// An empty closure stops the process.
  explicit Disposable(std::function<void()> action);
  ~Disposable();

  Disposable(Disposable&& other) noexcept;
  /// Runs this token's own closure before taking the other's.
  Disposable& operator=(Disposable&& other) noexcept;
  Disposable(const Disposable&) = delete;
  Disposable& operator=(const Disposable&) = delete;

 private:
  void dispose() noexcept;

  std::function<void()> closure_;
};

}  // namespace quilex
