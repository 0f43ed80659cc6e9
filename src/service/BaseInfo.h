#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "base/JSONCoding.h"

namespace quilex {

/// A category of the catalogue.
struct Cate {
  std::int64_t id = 0;
  std::string title;

  bool operator==(const Cate&) const = default;

  static constexpr auto fields() {
    return std::make_tuple(json::Field{"id", &Cate::id}, json::Field{"title", &Cate::title});
  }
};

/// The catalogue's categories and what is searched for most.
struct BaseInfo {
  std::vector<Cate> cate;
  std::vector<std::string> hottags;
  std::vector<std::string> hotkey;

  bool operator==(const BaseInfo&) const = default;

  static constexpr auto fields() {
    return std::make_tuple(json::Field{"cate", &BaseInfo::cate}, json::Field{"hottags", &BaseInfo::hottags},
                           json::Field{"hotkey", &BaseInfo::hotkey});
  }
};

}  // namespace quilex
