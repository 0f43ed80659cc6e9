#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "base/Result.h"
#include "companion/window/JobQueue.h"
#include "companion/window/VideoCards.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/RunLoop.h"

namespace quilex {

/// Reads the user's library at first, and again whenever it changes, whoever changes it. Main thread.
class LibraryFeed {
 public:
  using Deliver = std::function<void(Result<std::vector<VideoCard>> cards)>;

  /// All must outlive the feed. `deliver` is called after each reading.
  LibraryFeed(BackgroundWork& work, RunLoop& runLoop, DistributedNotificationCenter& notifications, Deliver deliver);

  /// Reads it now, or once more if it is being read.
  void read();

 private:
  /// Changes with the database's file.
  using Signature = std::string;

  void look(bool always);
  static Signature signature();

  JobQueue jobs_;
  Deliver deliver_;
  /// Of the file that was read last.
  std::shared_ptr<Signature> seen_ = std::make_shared<Signature>();
  std::optional<Disposable> looking_;
  std::optional<Disposable> notification_;
};

}  // namespace quilex
