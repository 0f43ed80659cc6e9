#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "base/Disposable.h"

namespace quilex {

/// Finds out whether files exist, beside the main thread, because a file system may take any time to answer: a share
/// whose server is gone, a disk that spins up. Main thread.
class FileFinder {
 public:
  /// How long a file system may take to answer for one file.
  static constexpr std::chrono::seconds kPatience{2};

  struct Answer {
    /// The index of the first of the files that exists.
    std::optional<std::size_t> found;
    /// Where none was found: whether one of them may exist all the same, because its file system has not answered.
    bool someUnanswered = false;
  };

  virtual ~FileFinder() = default;

  /// Looks for the first of these files, given by their absolute paths, that exists. Directories, devices, pipes and
  /// sockets are no files. `reply` is called once, from the run loop and never from inside this call, unless the token
  /// is released before. A file whose file system does not answer within `kPatience` counts as missing.
  [[nodiscard]] virtual Disposable findFirst(std::vector<std::filesystem::path> files,
                                             std::function<void(Answer)> reply) = 0;
};

}  // namespace quilex
