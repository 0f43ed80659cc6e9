#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>

#include "base/Result.h"
#include "linux/toolkit/loop/FileDescriptor.h"

namespace quilex {

/// A file that holds one JSON object and that several processes share. Nothing here waits for another process, whatever
/// stands at the path. Failures continue a sentence that begins with "the settings file": "is not a JSON object".
class SettingsFile {
 public:
  using Json = nlohmann::json;

  /// Distinguishes the states of a file without reading it.
  struct Signature {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;  // nanoseconds since the epoch
    std::int64_t changed = 0;
    bool operator==(const Signature&) const = default;
  };

  struct Contents {
    /// Absent while the file is so new that it may change again without its time stamps moving.
    std::optional<Signature> signature;
    /// Nothing when there is no file.
    Result<std::optional<Json>> object;
  };

  explicit SettingsFile(std::filesystem::path location) : path(std::move(location)) {}

  std::optional<Signature> signature() const;
  /// Reads the object. Fails for anything but a regular file of at most 1 MB that holds an object within the limits of
  /// `json::parse`.
  Contents read() const;

  /// Keeps the other processes that lock the file from writing it until the descriptor is closed, or the process ends.
  /// Nothing while another process holds the lock.
  Result<std::optional<FileDescriptor>> lock() const;

  /// Replaces the contents atomically. A new file has mode 0600, an existing one keeps its mode.
  Outcome replace(const Json& object) const;

  const std::filesystem::path path;
};

}  // namespace quilex
