#pragma once

#include <functional>
#include <optional>

#include "service/UpgradeInfo.h"

namespace quilex {

/// Whom to ask for the version on offer: the web service's client. Main thread.
class UpgradeInfoSource {
 public:
  using Completion = std::function<void(const std::optional<UpgradeInfo>&)>;

  virtual ~UpgradeInfoSource() = default;
  /// Calls the completion once with the version on offer, or with nothing if there is none or the request failed.
  virtual void requestUpgradeInfo(const Completion& completion) = 0;
};

}  // namespace quilex
