#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "base/Disposable.h"
#include "base/MainThread.h"

namespace quilex {

/// Handlers that are called, synchronously and in the order of their registration, when something happens. Meanwhile a
/// handler may register others (called from the next time on), release its own or another's token (not called any
/// more), or destroy the list. A token may outlive its list. Main thread only.
template <typename... Arguments>
class ObserverList {
 public:
  using Handler = std::function<void(Arguments...)>;

  [[nodiscard]] Disposable add(Handler handler) {
    mainThread_.check();
    auto entry = std::make_shared<Entry>(Entry{std::move(handler)});
    entries_->push_back(entry);
    return Disposable([list = std::weak_ptr<Entries>(entries_), entry] {
      entry->active = false;
      if (const auto alive = list.lock()) {
        std::erase(*alive, entry);
      }
    });
  }

  /// Passes each handler in turn to `call`, which calls it and may choose the arguments at the last moment.
  template <typename Call>
  void notifyEach(const Call& call) const {
    mainThread_.check();
    const Entries snapshot = *entries_;
    for (const auto& entry : snapshot) {
      if (entry->active) {
        call(entry->handler);
      }
    }
  }

  void notify(const Arguments&... arguments) const {
    notifyEach([&](const Handler& handler) { handler(arguments...); });
  }

 private:
  struct Entry {
    Handler handler;
    bool active = true;
  };
  using Entries = std::vector<std::shared_ptr<Entry>>;

  [[no_unique_address]] MainThread mainThread_;
  std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace quilex
