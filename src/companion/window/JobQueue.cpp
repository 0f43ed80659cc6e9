#include "companion/window/JobQueue.h"

namespace quilex {

void JobQueue::push(Job job) {
  mainThread_.check();
  jobs_.push_back(std::move(job));
  if (jobs_.size() == 1) {
    runFirst();
  }
}

void JobQueue::runFirst() {
  running_.emplace(work_.run([work = jobs_.front().work](const std::stop_token& /*stop*/) { work(); },
                             [this] {
                               const auto done = std::move(jobs_.front().done);
                               jobs_.pop_front();
                               if (!jobs_.empty()) {
                                 runFirst();
                               }
                               done();
                             }));
}

}  // namespace quilex
