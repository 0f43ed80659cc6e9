#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include "base/JSONCoding.h"
#include "library/VideoDetail.h"

namespace quilex {

/// One page of the video catalogue.
struct TotalVideo {
  std::int64_t pages = 0;
  std::int64_t page = 0;
  std::int64_t total = 0;
  std::int64_t count = 0;
  std::vector<VideoDetail> vlist;

  bool operator==(const TotalVideo&) const = default;

  static constexpr auto fields() {
    return std::make_tuple(json::Field{"pages", &TotalVideo::pages}, json::Field{"page", &TotalVideo::page},
                           json::Field{"total", &TotalVideo::total}, json::Field{"count", &TotalVideo::count},
                           json::Field{"vlist", &TotalVideo::vlist});
  }
};

}  // namespace quilex
