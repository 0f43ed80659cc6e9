#pragma once

#include "platform/WallClock.h"

namespace quilex {

/// The system's clock, with Qt's local time; needs a QCoreApplication.
class LocalWallClock : public WallClock {
 public:
  Time now() const override;
  Time startOfDay(Time time) const override;
  std::optional<Time> addingOneDay(Time time) const override;
  [[nodiscard]] Disposable at(Time date, std::function<void()> action) override;
};

}  // namespace quilex
