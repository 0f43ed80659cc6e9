#include "platform/AppInfo.h"

#include <utility>

#include "base/FatalError.h"
#include "base/PrivateFiles.h"

namespace quilex {

namespace {

std::optional<std::string> stringFor(const AppEnvironment& environment, const std::string& key) {
  const auto entry = environment.informationDictionary.find(key);
  return entry == environment.informationDictionary.end() ? std::nullopt : entry->second;
}

std::string nameInContainer(SearchPathDirectory kind) {
  switch (kind) {
    case SearchPathDirectory::caches:
      return "Caches";
    case SearchPathDirectory::applicationSupport:
      return "Application Support";
    case SearchPathDirectory::preferencePanes:
      return "Preferences";
    case SearchPathDirectory::other:
      break;
  }
  return {};
}

}  // namespace

AppInfo::AppInfo(AppEnvironment environment)
    : facts_(std::move(environment)), fullVersion_("1.0.0.0"), readableVersion_("1.0.0") {
  const auto shortVersion = stringFor(facts_, "CFBundleShortVersionString");
  const auto build = stringFor(facts_, "CFBundleVersion");
  if (shortVersion && build) {
    fullVersion_ = *shortVersion + "." + *build;
    readableVersion_ = *shortVersion + "(" + *build + ")";
  }
}

std::filesystem::path AppInfo::location(SearchPathDirectory kind) const {
  if (facts_.groupContainer) {
    const std::string name = nameInContainer(kind);
    return name.empty() ? *facts_.groupContainer : *facts_.groupContainer / name;
  }
  const auto candidates = facts_.userDirectories(kind);
  if (candidates.empty()) {
    fatalError("the user has no directory of the kind asked for");
  }
  return candidates.front() / stringFor(facts_, "CFBundleIdentifier").value_or("Quilex");
}

std::filesystem::path AppInfo::directory(SearchPathDirectory kind) const {
  std::filesystem::path result = location(kind);
  createPrivateFolder(result);
  return result;
}

const std::filesystem::path& AppInfo::URLS::applicationSupport() const {
  if (!support_) {
    support_ = owner_.directory(SearchPathDirectory::applicationSupport);
  }
  return *support_;
}

}  // namespace quilex
