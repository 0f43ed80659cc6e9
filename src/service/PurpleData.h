#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "base/JSONCoding.h"

namespace quilex {

/// The guide's images and the addresses that they lead to, as parallel arrays that need not have the same length. An
/// image is a base64 text, optionally after a prefix that ends in a comma.
struct PurpleData {
  using Texts = std::vector<std::string>;

  Texts leftPanel;
  Texts leftPanelUrl;
  Texts window;
  Texts windowUrl;
  Texts browser;
  Texts browserUrl;
  Texts newFeature;
  Texts newFeatureUrl;

  bool operator==(const PurpleData&) const = default;

  static constexpr auto fields() {
    using P = PurpleData;
    return std::make_tuple(json::Field{"leftPanel", &P::leftPanel}, json::Field{"leftPanelUrl", &P::leftPanelUrl},
                           json::Field{"window", &P::window}, json::Field{"windowUrl", &P::windowUrl},
                           json::Field{"browser", &P::browser}, json::Field{"browserUrl", &P::browserUrl},
                           json::Field{"newFeature", &P::newFeature}, json::Field{"newFeatureUrl", &P::newFeatureUrl});
  }
};

}  // namespace quilex
