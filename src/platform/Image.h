#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>
#include <string_view>

namespace quilex {

/// A decoded image of the desktop's toolkit. Two images are the same when they have the same address.
class Image {
 public:
  Image() = default;
  virtual ~Image() = default;
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;
};

struct DecodedImage {
  /// Null if there is none.
  std::shared_ptr<Image> image;
  /// Width times height; a pixel takes at most four bytes of memory.
  std::size_t pixels = 0;
};

/// Decodes an image file of the usual pixel formats. The result has no image if the bytes are not an image, if the
/// header gives more pixels than `maximumPixels` (then nothing is decoded), or if a stop is requested. The bytes come
/// from the network; nothing is logged about them. Any thread.
using DecodeImage =
    std::function<DecodedImage(std::string_view bytes, std::size_t maximumPixels, const std::stop_token& stop)>;

}  // namespace quilex
