#pragma once

#include <functional>
#include <memory>
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

/// Decodes the bytes of a picture file at once, of whatever format the toolkit reads; nothing when they are no such
/// picture. The bytes come from the network. Main thread.
using DecodeImage = std::function<std::shared_ptr<Image>(std::string_view bytes)>;

}  // namespace quilex
