#pragma once

#include <functional>
#include <utility>

#include "base/ObserverList.h"
#include "platform/AgentStatus.h"

namespace quilex {

/// The agent's status, written by the parts that know it and observed by the one that publishes it. Main thread.
class StatusReport {
 public:
  /// Applies the change to the status, then notifies, even if nothing differs.
  template <typename Change>
  void update(const Change& change) {
    change(current_);
    observers_.notify();
  }
  /// Sets what fills in the counters whenever the status is read.
  void setCount(std::function<void(AgentStatus&)> count) { count_ = std::move(count); }

  AgentStatus read() const {
    AgentStatus status = current_;
    if (count_) {
      count_(status);
    }
    return status;
  }
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers_.add(std::move(handler)); }

 private:
  AgentStatus current_;
  std::function<void(AgentStatus&)> count_;
  ObserverList<> observers_;
};

}  // namespace quilex
