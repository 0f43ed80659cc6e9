#pragma once

#include <any>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "base/Disposable.h"
#include "base/ObserverList.h"

namespace quilex {

/// Notifications within the process, keyed by name. They carry a value or none, as documented with the name. Main
/// thread.
class NotificationCenter {
 public:
  using Handler = std::function<void(const std::any& userInfo)>;

  /// Calls the handler for each notification of that name, from inside `post`, until the token is released. The token
  /// may outlive the centre.
  [[nodiscard]] Disposable observe(const std::string& name, Handler handler) {
    return observers_[name].add(std::move(handler));
  }

  void post(const std::string& name, const std::any& userInfo = {}) const {
    if (const auto entry = observers_.find(name); entry != observers_.end()) {
      entry->second.notify(userInfo);
    }
  }

 private:
  std::map<std::string, ObserverList<const std::any&>> observers_;
};

}  // namespace quilex
