#include "playback/Standstill.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quilex {

namespace {

constexpr std::chrono::seconds kPatience{1};

}  // namespace

Standstill::Standstill(RunLoop& runLoop, StatusReport& report, std::function<void(bool isHeld)> hold)
    : runLoop_(runLoop), report_(report), hold_(std::move(hold)) {}

Disposable Standstill::respect(const StandstillReason& reason) {
  mainThread_.check();
  const auto entry = std::make_shared<Entry>(Entry{reason.clause});
  reasons_.push_back(entry);
  auto watch = std::make_shared<Disposable>(reason.watch([this, entry](bool applies) {
    entry->applies = applies;
    update();
  }));
  return Disposable([this, entry, watch = std::move(watch)]() mutable {
    watch.reset();
    std::erase(reasons_, entry);
    update();
  });
}

void Standstill::update() {
  if (std::ranges::none_of(reasons_, &Entry::applies)) {
    wait_.reset();
    setHeld(false);
  } else if (!isHeld_ && !wait_) {
    wait_ = runLoop_.after(kPatience, [this] {
      wait_.reset();
      setHeld(true);
    });
  }
  reportReasons();
}

void Standstill::setHeld(bool isHeld) {
  if (std::exchange(isHeld_, isHeld) != isHeld) {
    hold_(isHeld);
    reportReasons();
  }
}

void Standstill::reportReasons() {
  std::vector<std::string> clauses;
  for (const auto& reason : reasons_) {
    if (isHeld_ && reason->applies) {
      clauses.push_back(reason->clause);
    }
  }
  report_.update([&](AgentStatus& status) { status.standsStillBecause = clauses; });
}

}  // namespace quilex
