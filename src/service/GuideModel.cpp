#include "service/GuideModel.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "service/Base64.h"

namespace quilex {

namespace {

std::shared_ptr<Image> picture(std::string_view text, const DecodeImage& decodeImage) {
  // The last piece between the commas that is not empty.
  const auto end = text.find_last_not_of(',');
  if (end == std::string_view::npos) {
    return {};
  }
  text = text.substr(0, end + 1);
  const auto bytes = base64Decode(text.substr(text.rfind(',') + 1));
  return bytes ? decodeImage(*bytes) : nullptr;
}

GuideDictionary pairs(const std::vector<std::string>& pictures, const std::vector<std::string>& addresses,
                      const DecodeImage& decodeImage) {
  GuideDictionary dictionary;
  for (std::size_t i = 0; i < std::min(pictures.size(), addresses.size()); ++i) {
    const auto image = picture(pictures[i], decodeImage);
    const auto address = URL::parse(addresses[i]);
    if (image && address) {
      dictionary.insert_or_assign(image, *address);
    }
  }
  return dictionary;
}

}  // namespace

GuideModel::GuideModel(GuideResponse reply, const DecodeImage& decodeImage)
    : leftPanel(pairs(reply.data.leftPanel, reply.data.leftPanelUrl, decodeImage)),
      newFeature(pairs(reply.data.newFeature, reply.data.newFeatureUrl, decodeImage)),
      guideResponse(std::move(reply)) {}

}  // namespace quilex
