#pragma once

#include "platform/HTTPSession.h"
#include "platform/WallClock.h"
#include "support/Fakes.h"

namespace quilex::test {

/// The time of day on a run loop's virtual clock, in a zone of which the test says when its offset changes.
struct FakeWallClock : WallClock {
  struct Offset {
    Time from;
    std::chrono::hours value;
  };
  explicit FakeWallClock(FakeRunLoop& loop) : runLoop(loop) {}
  FakeRunLoop& runLoop;
  /// When the run loop stood at 0.
  Time start{};
  std::vector<Offset> offsets{{Time::min(), std::chrono::hours(0)}};
  Time local(Time time) const {
    const auto later = std::ranges::find_if(offsets, [&](const Offset& offset) { return offset.from > time; });
    return time + std::prev(later)->value;
  }
  /// The first moment at which the clocks show at least that.
  Time fromLocal(Time shown) const {
    for (auto offset = offsets.begin();; ++offset) {
      const Time time = std::max(shown - offset->value, offset->from);
      if (std::next(offset) == offsets.end() || time < std::next(offset)->from) {
        return time;
      }
    }
  }
  Time now() const override { return start + runLoop.now; }
  Time startOfDay(Time time) const override { return fromLocal(std::chrono::floor<std::chrono::days>(local(time))); }
  bool calendarEnds = false;
  std::optional<Time> addingOneDay(Time time) const override {
    return calendarEnds ? std::nullopt : std::optional(fromLocal(local(time) + std::chrono::days(1)));
  }
  Disposable at(Time date, Handler action) override {
    return runLoop.after(std::max(date - now(), FakeRunLoop::Time(0)), std::move(action));
  }
};

/// Keeps what is posted until the test answers it.
struct FakeHTTPSession : HTTPSession {
  struct Request {
    FakeRunLoop::Time time;
    std::string url, contentType, body;
    std::function<void(std::optional<std::string>)> reply;
  };
  FakeHTTPSession(const FakeRunLoop& loop, std::vector<Request>& log) : runLoop(loop), requests(log) {}
  const FakeRunLoop& runLoop;
  std::vector<Request>& requests;
  void post(const std::string& url, const std::string& contentType, const std::string& body,
            std::function<void(std::optional<std::string>)> reply) override {
    requests.push_back({runLoop.now, url, contentType, body, std::move(reply)});
  }
};

}  // namespace quilex::test
