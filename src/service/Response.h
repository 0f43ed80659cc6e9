#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "base/JSONCoding.h"
#include "library/VideoDetail.h"
#include "service/BaseInfo.h"
#include "service/DataBody.h"
#include "service/PurpleData.h"
#include "service/TotalVideo.h"

namespace quilex {

/// The envelope that every answer of the service comes in.
template <typename Data>
struct Response {
  /// The service's result code for the request.
  std::int64_t status = 0;
  /// The service's message text.
  std::string info;
  Data data{};

  bool operator==(const Response&) const = default;

  static constexpr auto fields() {
    return std::make_tuple(json::Field{"status", &Response::status}, json::Field{"info", &Response::info},
                           json::Field{"data", &Response::data});
  }
};

using BaseInfoResponse = Response<BaseInfo>;
using HeartbeatResponse = Response<DataBody>;
using VideoListResponse = Response<TotalVideo>;
using KeywordResponse = Response<std::vector<std::string>>;
using VideoDetailResponse = Response<VideoDetail>;
using GuideResponse = Response<PurpleData>;

}  // namespace quilex
