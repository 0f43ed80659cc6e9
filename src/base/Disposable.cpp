#include "base/Disposable.h"

#include <utility>

#include "base/FatalError.h"

namespace quilex {

Disposable::Disposable(std::function<void()> action) : closure_(std::move(action)) {
  if (!closure_) {
    fatalError("use of unimplemented initializer 'init()' for class 'QuilexHelper.Disposable'");
  }
}

Disposable::~Disposable() {
  dispose();
}

Disposable::Disposable(Disposable&& other) noexcept : closure_(std::exchange(other.closure_, nullptr)) {}

Disposable& Disposable::operator=(Disposable&& other) noexcept {
  if (this != &other) {
    dispose();
    closure_ = std::exchange(other.closure_, nullptr);
  }
  return *this;
}

void Disposable::dispose() noexcept {
  // Emptied first: the closure may destroy or replace this token.
  if (auto action = std::exchange(closure_, nullptr)) {
    action();
  }
}

}  // namespace quilex
