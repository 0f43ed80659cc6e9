#pragma once

#include <functional>
#include <utility>

#include "base/ObserverList.h"
#include "platform/AgentStatus.h"

namespace quilex {

/// Where the agent's parts write down what they know of its status, and others follow it. Main thread.
class StatusReport {
 public:
  /// Has `change` change the status, then notifies, also where nothing differs.
  template <typename Change>
  void update(const Change& change) {
    change(current_);
    observers_.notify();
  }
  /// Fills in what is counted all the time, whenever the status is read.
  void setCount(std::function<void(AgentStatus&)> newCount) { count_ = std::move(newCount); }

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
