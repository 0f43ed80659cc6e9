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
    change(current);
    observers.notify();
  }
  /// Fills in what is counted all the time, whenever the status is read.
  void setCount(std::function<void(AgentStatus&)> newCount) { count = std::move(newCount); }

  AgentStatus read() const {
    AgentStatus status = current;
    if (count) {
      count(status);
    }
    return status;
  }
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers.add(std::move(handler)); }

 private:
  AgentStatus current;
  std::function<void(AgentStatus&)> count;
  ObserverList<> observers;
};

}  // namespace quilex
