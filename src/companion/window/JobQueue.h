#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "base/MainThread.h"
#include "platform/BackgroundWork.h"

namespace quilex {

/// Runs jobs beside the main thread, one after the other in the order they came. Main thread.
class JobQueue {
 public:
  /// `work` must outlive the queue.
  explicit JobQueue(BackgroundWork& work) : work_(work) {}

  /// Runs the job, which must own what it uses, and then `done` with its result on the main thread.
  template <typename Value>
  void run(std::function<Value()> job, std::function<void(Value)> done) {
    const auto value = std::make_shared<std::optional<Value>>();
    push({[value, job = std::move(job)] { value->emplace(job()); },
          [value, done = std::move(done)] { done(*std::move(*value)); }});
  }

  bool isIdle() const { return jobs_.empty(); }

 private:
  struct Job {
    std::function<void()> work;
    std::function<void()> done;
  };

  void push(Job job);
  void runFirst();

  [[no_unique_address]] MainThread mainThread_;
  BackgroundWork& work_;
  /// The first one is running.
  std::deque<Job> jobs_;
  std::optional<Disposable> running_;
};

}  // namespace quilex
