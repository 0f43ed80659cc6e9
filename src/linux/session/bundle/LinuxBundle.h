#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/AppInfo.h"

namespace quilex {

/// The application's bundle: the folder ../share/quilexhelper beside the executable's own folder.
class LinuxBundle {
 public:
  /// `folder` need not exist.
  explicit LinuxBundle(std::filesystem::path folder);
  /// The bundle of the running program.
  static LinuxBundle main();

  const std::filesystem::path& path() const { return folder_; }
  /// The file "name.type" of the bundle, if it is there.
  std::optional<std::filesystem::path> resource(const std::string& name, const std::string& type) const;
  /// The information dictionary (Info.json) and the user's directories. A missing or malformed dictionary is empty.
  AppEnvironment environment() const;

 private:
  std::filesystem::path folder_;
};

/// $XDG_CONFIG_HOME and $XDG_DATA_HOME with their defaults (XDG Base Directory Specification 0.8, by which relative
/// values are ignored).
std::filesystem::path configHome();
std::filesystem::path dataHome();

/// The file of the settings that are shared with the main application.
std::filesystem::path settingsFile();

}  // namespace quilex
