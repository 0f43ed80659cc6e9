#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>
#include <string_view>

namespace quilex {

/// A decoded picture of the desktop's toolkit. Two pictures are the same when they have the same address.
class Image {
 public:
  Image() = default;
  virtual ~Image() = default;
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;
};

struct DecodedImage {
  /// Nothing when there is none.
  std::shared_ptr<Image> image;
  /// Its width by its height; each takes at most four bytes of memory.
  std::size_t pixels = 0;
};

/// Decodes the bytes of a picture file, of the usual formats for photographs and drawings in pixels; nothing when they
/// are no such picture, when it has more pixels than that, which its header says before any is decoded, or when a stop
/// is requested. The bytes come from the network: whatever is in them is met with silence. Any thread.
using DecodeImage =
    std::function<DecodedImage(std::string_view bytes, std::size_t maximumPixels, const std::stop_token& stop)>;

}  // namespace quilex
