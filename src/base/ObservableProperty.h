#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "base/Disposable.h"
#include "base/ObserverList.h"

namespace quilex {

/// A value whose changes can be observed and are written through to a store. Setting never compares with the old
/// value: it always stores and always notifies. Main thread only.
template <typename Value>
class ObservableProperty {
 public:
  using Handler = typename ObserverList<Value>::Handler;
  using Store = std::function<void(const Value&)>;

  explicit ObservableProperty(Store store = {}) : store_(std::move(store)) {}

  const Value& get() const { return *value_; }

  /// Sets the value without storing or notifying.
  void assign(Value newValue) { *value_ = std::move(newValue); }

  /// Sets the value, writes it to the store, then notifies the observers.
  void set(Value newValue) {
    *value_ = std::move(newValue);
    if (store_) {
      store_(*value_);
    }
    notify();
  }

  /// Sets a value that the store holds already, then notifies the observers.
  void apply(Value newValue) {
    *value_ = std::move(newValue);
    notify();
  }

  /// Calls the handler with the new value on each later change, until the token is released; no initial call.
  [[nodiscard]] Disposable observe(Handler handler) { return observers_.add(std::move(handler)); }

  /// Assigns each new value to a property of `target`, which must outlive the token.
  template <typename Target>
  [[nodiscard]] Disposable bind(Target& target, void (Target::*assignment)(Value)) {
    return observe([&target, assignment](const Value& newValue) { (target.*assignment)(newValue); });
  }

 private:
  void notify() {
    // A handler may set the property again or destroy it. Each observer gets the value as it is when its turn comes, so
    // that none ends with an older value than it has seen.
    observers_.notifyEach([current = value_](const Handler& handler) {
      const Value copy = *current;
      handler(copy);
    });
  }

  Store store_;
  std::shared_ptr<Value> value_ = std::make_shared<Value>();
  ObserverList<Value> observers_;
};

}  // namespace quilex
