#include "linux/session/dbus/WatchTogether.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace quilex {

namespace {

struct Flags {
  Together when;
  StandstillReason::Handler handler;
  std::vector<char> values;
  bool isSet = false;
  std::vector<Disposable> tokens;

  void set(std::size_t index, bool value) {
    values[index] = static_cast<char>(value);
    const auto isTrue = [](char each) { return each != 0; };
    const bool now = when == Together::any ? std::ranges::any_of(values, isTrue) : std::ranges::all_of(values, isTrue);
    if (std::exchange(isSet, now) != now) {
      // The handler may release the token and with it this object.
      const auto running = handler;
      running(now);
    }
  }
};

}  // namespace

Disposable watchTogether(Together when, const std::vector<decltype(StandstillReason::watch)>& watches,
                         StandstillReason::Handler handler) {
  auto flags = std::make_shared<Flags>(Flags{when, std::move(handler), std::vector<char>(watches.size()), false, {}});
  for (std::size_t index = 0; index < watches.size(); ++index) {
    flags->tokens.push_back(watches[index]([raw = flags.get(), index](bool value) { raw->set(index, value); }));
  }
  return Disposable([flags = std::move(flags)]() mutable { flags.reset(); });
}

}  // namespace quilex
