#include "service/GuideModel.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "service/Base64.h"

namespace quilex {

namespace {

/// The base64 part of an image's text: the last of its comma-separated parts that is not empty.
std::string_view lastPiece(std::string_view text) {
  text = text.substr(0, text.find_last_not_of(',') + 1);
  return text.substr(text.rfind(',') + 1);
}

/// Decodes images until they have as many pixels as a guide may have.
class ImageReader {
 public:
  ImageReader(const DecodeImage& decodeImage, const std::stop_token& stop) : decodeImage_(decodeImage), stop_(stop) {}

  GuideDictionary pairs(const std::vector<std::string>& images, const std::vector<std::string>& addresses) {
    GuideDictionary dictionary;
    const std::size_t count = std::min({images.size(), addresses.size(), GuideModel::kMaximumPairs});
    for (std::size_t i = 0; i < count; ++i) {
      const auto address = URL::parse(addresses[i]);
      if (const auto image = address ? decode(lastPiece(images[i])) : nullptr) {
        dictionary.insert_or_assign(image, *address);
      }
    }
    return dictionary;
  }

 private:
  std::shared_ptr<Image> decode(std::string_view base64) {
    if (base64.empty() || base64.size() > GuideModel::kMaximumImageText || stop_.stop_requested()) {
      return {};
    }
    const auto bytes = base64Decode(base64);
    const auto decoded = bytes ? decodeImage_(*bytes, pixelsLeft_, stop_) : DecodedImage();
    pixelsLeft_ -= decoded.pixels;
    return decoded.image;
  }

  const DecodeImage& decodeImage_;
  const std::stop_token& stop_;
  std::size_t pixelsLeft_ = GuideModel::kMaximumPixels;
};

}  // namespace

GuideModel::GuideModel(GuideResponse reply, const DecodeImage& decodeImage, const std::stop_token& stop)
    : guideResponse(std::move(reply)) {
  ImageReader reader(decodeImage, stop);
  const PurpleData& data = guideResponse.data;
  leftPanel = reader.pairs(data.leftPanel, data.leftPanelUrl);
  newFeature = reader.pairs(data.newFeature, data.newFeatureUrl);
}

}  // namespace quilex
