#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>

#include "base/JSONCoding.h"

namespace quilex {

/// A video, as the service describes it and as the library keeps it. A plain value, of which only `url`, `description`,
/// `view` and `avatarsize` are meant to change.
struct VideoDetail {
  std::int64_t id = 0;
  /// Identifies the video everywhere.
  std::string sign;
  /// Address of a preview.
  std::string preurl;
  std::string title;
  /// For videos of the library a file URL.
  std::string url;
  std::string description;
  /// Duration.
  std::int64_t time = 0;
  /// Bytes.
  std::int64_t size = 0;
  /// Address of the cover picture, and its size in bytes.
  std::string imgurl;
  std::int64_t imgsize = 0;
  std::string tags;
  std::string ratio;
  /// Pixels.
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::int64_t frame = 0;
  std::int64_t rate = 0;
  /// Not 0 when there is a sound track.
  std::int64_t audio = 0;
  std::string uptime;
  std::int64_t down = 0;
  std::int64_t view = 0;
  std::string author;
  std::string avatar;
  std::int64_t avatarsize = 0;
  /// Home page.
  std::string hp;
  std::int64_t upcount = 0;

  bool operator==(const VideoDetail&) const = default;

  /// The members in declaration order with their JSON keys.
  static constexpr auto fields() {
    using V = VideoDetail;
    using Integer = json::Field<V, std::int64_t>;
    using String = json::Field<V, std::string>;
    return std::make_tuple(Integer{"id", &V::id}, String{"sign", &V::sign}, String{"preurl", &V::preurl},
                           String{"title", &V::title}, String{"url", &V::url}, String{"description", &V::description},
                           Integer{"time", &V::time}, Integer{"size", &V::size}, String{"imgurl", &V::imgurl},
                           Integer{"imgsize", &V::imgsize}, String{"tags", &V::tags}, String{"ratio", &V::ratio},
                           Integer{"width", &V::width}, Integer{"height", &V::height}, Integer{"frame", &V::frame},
                           Integer{"rate", &V::rate}, Integer{"audio", &V::audio}, String{"uptime", &V::uptime},
                           Integer{"down", &V::down}, Integer{"view", &V::view}, String{"author", &V::author},
                           String{"avatar", &V::avatar}, Integer{"avatarsize", &V::avatarsize}, String{"hp", &V::hp},
                           Integer{"upcount", &V::upcount});
  }

  /// The column of table LocalVideos for the field with this JSON key. They differ only in "id", which is "vid" there.
  static std::string columnFor(const std::string& key) { return key == "id" ? "vid" : key; }

  static json::Decoded<VideoDetail> fromJSON(const nlohmann::json& object) { return json::decode<VideoDetail>(object); }
  nlohmann::ordered_json toJSON() const { return json::encode(*this); }
};

}  // namespace quilex
