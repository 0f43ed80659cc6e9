#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "base/MainThread.h"
#include "platform/RunLoop.h"
#include "platform/StandstillReason.h"
#include "platform/StatusReport.h"

namespace quilex {

/// Holds the player while there are reasons to, whatever the settings say of playing. Since reasons flicker (a window
/// is dragged across the screen, say), the player is held once there has been some reason for a second; it goes on as
/// soon as there is none. Main thread.
class Standstill {
 public:
  /// `hold` is called with each change. Loop and report must outlive the object.
  Standstill(RunLoop& runLoop, StatusReport& report, std::function<void(bool isHeld)> hold);
  Standstill(const Standstill&) = delete;
  Standstill& operator=(const Standstill&) = delete;

  /// Respects the reason from now on, until the token is released. The object must outlive the token.
  [[nodiscard]] Disposable respect(const StandstillReason& reason);

 private:
  struct Entry {
    std::string clause;
    bool applies = false;
  };

  void update();
  void setHeld(bool isHeld);
  void reportReasons();

  [[no_unique_address]] MainThread mainThread_;
  RunLoop& runLoop_;
  StatusReport& report_;
  std::function<void(bool)> hold_;
  /// In the order in which they came.
  std::vector<std::shared_ptr<Entry>> reasons_;
  bool isHeld_ = false;
  /// Set while there are reasons, but not for long enough.
  std::optional<Disposable> wait_;
};

}  // namespace quilex
