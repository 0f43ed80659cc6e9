#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "base/JSONCoding.h"

namespace quilex {

/// The catalogue's sort orders, for the main application; the agent makes no query.
enum class VideoSort { newest, hottest };

/// A query of the video catalogue, made by the main application.
struct VideoListRequest {
  /// The installation's user identifier; not meant to change once the request is made.
  std::string ui;
  /// Identifier of a category.
  std::int64_t cate = 0;
  std::int64_t page = 0;
  std::string keywords;
  /// The service's number for a `VideoSort`.
  std::int64_t sort = 0;
  std::string author;

  bool operator==(const VideoListRequest&) const = default;

  static constexpr auto fields() {
    using V = VideoListRequest;
    return std::make_tuple(json::Field{"ui", &V::ui}, json::Field{"cate", &V::cate}, json::Field{"page", &V::page},
                           json::Field{"keywords", &V::keywords}, json::Field{"sort", &V::sort},
                           json::Field{"author", &V::author});
  }
};

}  // namespace quilex
