#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Image.h"
#include "service/Response.h"
#include "service/URL.h"

namespace quilex {

/// Images and the addresses that they lead to.
using GuideDictionary = std::unordered_map<std::shared_ptr<Image>, URL>;

/// The guide's content, built once from a reply. An image or an address that cannot be decoded is left out with its
/// counterpart, and so is everything beyond the limits, so that no server can fill the memory.
struct GuideModel {
  /// Each dictionary's limit; pairs after the first ones are left out. A presentation has a handful.
  static constexpr std::size_t kMaximumPairs = 64;
  /// The limit of one image's base64 text, in bytes: 24 MiB as a file, more than a photograph of the largest size
  /// below.
  static constexpr std::size_t kMaximumImageText = std::size_t{32} << 20U;
  /// The limit for all images of a guide together: seven screens of 3840x2160, or 256 MB of memory.
  static constexpr std::size_t kMaximumPixels = 64'000'000;

  /// Decodes the images, which may take seconds; on any thread. Those after a stop are left out.
  GuideModel(GuideResponse reply, const DecodeImage& decodeImage, const std::stop_token& stop = {});

  GuideDictionary leftPanel;
  GuideDictionary newFeature;
  /// For the main application; always empty here.
  std::optional<GuideResponse> response;
  GuideResponse guideResponse;
};

}  // namespace quilex
