#pragma once

#include "platform/BackgroundWork.h"
#include "platform/HTTPSession.h"
#include "platform/WallClock.h"
#include "support/Fakes.h"

namespace quilex::test {

inline const std::string kHeartbeatReply =
    R"({"status":-1,"info":"grüße","data":{"ct":5,"time":{"st":1,"vt":[2,3],"tt":4},"msg":{"msg_bottom":{"msgid":1,)"
    R"("msg":"m","url":"u","color":"c","back":2},"msg_top":{"msgid":3,"tittle":"t","url":"v","color":{"show":"s",)"
    R"("hover":"h","click":"k"},"point":4,"type":5,"back":6,"width":7,"height":8}},"upgrade":[null,1,2.5,)"
    R"(9.223372036854776e+18,"s",{"a":[true]}],"speedlimit":9}})";

/// The time of day on a run loop's virtual clock, in a calendar of few days.
struct FakeWallClock : WallClock {
  using Hours = std::chrono::hours;
  struct Day {
    /// When it begins, and what the clocks show then.
    Hours start, shown{0};
  };
  explicit FakeWallClock(FakeRunLoop& loop) : runLoop(loop) {}
  FakeRunLoop& runLoop;
  /// When the run loop stood at 0.
  Time start{};
  std::vector<Day> days{{Hours(0)}, {Hours(24)}, {Hours(48)}, {Hours(72)}, {Hours(96)}};
  auto dayOf(Time time) const {
    return std::prev(std::ranges::upper_bound(days, time, {}, [](const Day& day) { return Time(day.start); }));
  }
  Time now() const override { return start + runLoop.now; }
  Time startOfDay(Time time) const override { return Time(dayOf(time)->start); }
  std::optional<Time> addingOneDay(Time time) const override {
    const auto day = dayOf(time), next = std::next(day);
    const auto shown = time - Time(day->start) + day->shown;
    return next == days.end() ? std::nullopt
                              : std::optional(Time(next->start) + std::max(shown - next->shown, Time::duration(0)));
  }
  Disposable at(Time date, Handler action) override {
    return runLoop.after(std::max(date - now(), FakeRunLoop::Time(0)), std::move(action));
  }
};

/// Does the work at once, and calls `done` in the run loop's next turn.
struct FakeBackgroundWork : BackgroundWork {
  explicit FakeBackgroundWork(FakeRunLoop& loop) : runLoop(loop) {}
  FakeRunLoop& runLoop;
  Disposable run(Work work, Handler done) override {
    work({});
    return runLoop.after(FakeRunLoop::Time(0), std::move(done));
  }
};

/// Keeps the requests until the test answers them.
struct FakeHTTPSession : HTTPSession {
  struct Request {
    FakeRunLoop::Time time;
    HTTPRequest sent;
    std::function<void(std::optional<std::string>)> reply;
  };
  FakeHTTPSession(const FakeRunLoop& loop, std::vector<Request>& log) : runLoop(loop), requests(log) {}
  const FakeRunLoop& runLoop;
  std::vector<Request>& requests;
  void post(const HTTPRequest& request, std::function<void(std::optional<std::string>)> reply) override {
    requests.push_back({runLoop.now, request, std::move(reply)});
  }
};

}  // namespace quilex::test
