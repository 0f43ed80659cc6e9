#include "linux/session/bundle/LinuxBundle.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>
#include <vector>

namespace quilex {

namespace fs = std::filesystem;

namespace {

fs::path absoluteFromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  const fs::path path = value != nullptr ? value : "";
  return path.is_absolute() ? path : fs::path();
}

fs::path home() {
  if (fs::path path = absoluteFromEnvironment("HOME"); !path.empty()) {
    return path;
  }
  const passwd* user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

fs::path xdgDirectory(const char* variable, const char* fallbackInHome) {
  fs::path path = absoluteFromEnvironment(variable);
  return path.empty() ? home() / fallbackInHome : path;
}

}  // namespace

fs::path configHome() {
  return xdgDirectory("XDG_CONFIG_HOME", ".config");
}

fs::path dataHome() {
  return xdgDirectory("XDG_DATA_HOME", ".local/share");
}

fs::path settingsFile() {
  return configHome() / AppInfo::groupIdentifier / "settings.json";
}

LinuxBundle::LinuxBundle(fs::path folder) : folder_(std::move(folder)) {}

LinuxBundle LinuxBundle::main() {
  std::error_code ignored;
  const fs::path program = fs::read_symlink("/proc/self/exe", ignored);
  return LinuxBundle(program.parent_path().parent_path() / "share" / "quilexhelper");
}

std::optional<fs::path> LinuxBundle::resource(const std::string& name, const std::string& type) const {
  fs::path path = folder_ / (name + "." + type);
  std::error_code ignored;
  return fs::exists(path, ignored) ? std::optional(std::move(path)) : std::nullopt;
}

AppEnvironment LinuxBundle::environment() const {
  AppEnvironment environment;
  std::ifstream file(folder_ / "Info.json");
  const auto info = nlohmann::json::parse(file, nullptr, false);
  if (info.is_object()) {
    for (const auto& [key, value] : info.items()) {
      environment.informationDictionary[key] =
          value.is_string() ? std::optional(value.get<std::string>()) : std::nullopt;
    }
  }
  environment.userDirectories = [](SearchPathDirectory kind) -> std::vector<fs::path> {
    switch (kind) {
      case SearchPathDirectory::caches:
        return {xdgDirectory("XDG_CACHE_HOME", ".cache")};
      case SearchPathDirectory::preferencePanes:
        return {configHome()};
      case SearchPathDirectory::applicationSupport:
      case SearchPathDirectory::other:
        break;
    }
    return {dataHome()};
  };
  return environment;
}

}  // namespace quilex
