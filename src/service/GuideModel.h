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

/// Pictures and the addresses that they lead to.
using GuideDictionary = std::unordered_map<std::shared_ptr<Image>, URL>;

/// The guide's content, built once from a reply. What cannot be decoded, picture or address, is left out with its
/// counterpart, and so is what goes beyond the limits: whoever answers for the service must not fill the memory.
struct GuideModel {
  /// Of each dictionary, the first ones; those after them are left out. A presentation has a handful.
  static constexpr std::size_t kMaximumPairs = 64;
  /// Of one picture's base64 text, in bytes: 24 MiB as a file, which photographs of the largest size below stay under.
  static constexpr std::size_t kMaximumPictureText = std::size_t{32} << 20U;
  /// Of each picture, and of all pictures of a guide together: seven screens of 3840x2160, or 256 MB of memory.
  static constexpr std::size_t kMaximumPixels = 64'000'000;

  /// Decodes the pictures at once, which may take seconds; on any thread. Those after a stop are left out.
  GuideModel(GuideResponse reply, const DecodeImage& decodeImage, const std::stop_token& stop = {});

  GuideDictionary leftPanel;
  GuideDictionary newFeature;
  /// Always empty.
  std::optional<GuideResponse> response;
  GuideResponse guideResponse;
};

}  // namespace quilex
