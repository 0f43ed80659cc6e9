#pragma once

#include <string>
#include <tuple>

#include "base/JSONCoding.h"

namespace quilex {

/// A version that the service offers.
struct UpgradeInfo {
  /// Address of the new version's download or information page.
  std::string url;
  /// Checksum of the download, for the main application; the agent does not check it.
  std::string md5;
  /// The version, in the form of `AppInfo::version`.
  std::string ver;
  /// Description, a fragment of HTML.
  std::string exp;

  bool operator==(const UpgradeInfo&) const = default;

  static constexpr auto fields() {
    using U = UpgradeInfo;
    return std::make_tuple(json::Field{"url", &U::url}, json::Field{"md5", &U::md5}, json::Field{"ver", &U::ver},
                           json::Field{"exp", &U::exp});
  }
};

}  // namespace quilex
