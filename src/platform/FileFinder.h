#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "base/Disposable.h"

namespace quilex {

/// Finds out whether files exist, without blocking: a file system may take any time to answer, such as a share whose
/// server is gone or a disk that spins up. Main thread.
class FileFinder {
 public:
  /// How long a file system may take to answer for one file.
  static constexpr std::chrono::seconds kPatience{2};

  struct Answer {
    /// The index of the first of the files that exists.
    std::optional<std::size_t> found;
    /// If none was found: whether one may exist all the same, because its file system has not answered.
    bool someUnanswered = false;
  };

  virtual ~FileFinder() = default;

  /// Looks for the first of these files, given by absolute paths, that exists. Directories, devices, pipes and sockets
  /// do not count, and neither does a file whose file system does not answer within `kPatience`. `reply` is called
  /// once, never from inside this call, unless the token is released before.
  [[nodiscard]] virtual Disposable findFirst(std::vector<std::filesystem::path> files,
                                             std::function<void(Answer)> reply) = 0;
};

}  // namespace quilex
