#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quilex {

/// The kinds of directory that AppInfo knows; `other` is every kind without a name of its own.
enum class SearchPathDirectory { caches, applicationSupport, preferencePanes, other };

/// The desktop's facts about the running application.
struct AppEnvironment {
  /// The bundle's information dictionary; a key whose value is not a string is present with no value.
  std::map<std::string, std::optional<std::string>> informationDictionary;
  /// The container that the applications of the group share; none on desktops without such containers.
  std::optional<std::filesystem::path> groupContainer;
  /// The user's own directories of a kind, best first.
  std::function<std::vector<std::filesystem::path>(SearchPathDirectory)> userDirectories;
};

/// Facts about the running application.
class AppInfo {
 public:
  static constexpr std::string_view groupIdentifier = "K4TQZM71RX.quilex";

  explicit AppInfo(AppEnvironment environment);
  AppInfo(const AppInfo&) = delete;
  AppInfo& operator=(const AppInfo&) = delete;

  /// The instance of this process.
  static const AppInfo& shared();

  /// Short version, a point, the build number; "1.0.0.0" when either is missing.
  const std::string& version() const { return fullVersion_; }
  /// Short version with the build number in parentheses; "1.0.0" when either is missing.
  const std::string& displayVersion() const { return readableVersion_; }

  /// Where files of that kind go.
  std::filesystem::path location(SearchPathDirectory kind) const;
  /// The same, created if it is missing. A failure to create it is ignored: the caller's file operations will fail.
  std::filesystem::path directory(SearchPathDirectory kind) const;

  /// Paths that are looked up once.
  class URLS {
   public:
    explicit URLS(const AppInfo& info) : owner_(info) {}
    const std::filesystem::path& applicationSupport() const;

   private:
    const AppInfo& owner_;
    mutable std::optional<std::filesystem::path> support_;
  };
  const URLS& urls() const { return paths_; }

 private:
  AppEnvironment facts_;
  std::string fullVersion_;
  std::string readableVersion_;
  URLS paths_{*this};
};

}  // namespace quilex
