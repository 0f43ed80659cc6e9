#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Image.h"
#include "service/Response.h"
#include "service/URL.h"

namespace quilex {

/// Pictures and the addresses that they lead to.
using GuideDictionary = std::unordered_map<std::shared_ptr<Image>, URL>;

/// The guide's content, built once from a reply. What cannot be decoded, picture or address, is left out with its
/// counterpart.
struct GuideModel {
  /// Decodes the pictures at once.
  GuideModel(GuideResponse reply, const DecodeImage& decodeImage);

  GuideDictionary leftPanel;
  GuideDictionary newFeature;
  /// Always empty.
  std::optional<GuideResponse> response;
  GuideResponse guideResponse;
};

}  // namespace quilex
