#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "base/JSONCoding.h"
#include "service/JSONAny.h"

namespace quilex {

/// The parts of a heartbeat's reply. They have a namespace because their names are common ones.
namespace wire {

/// The service's timing figures.
struct Time {
  std::int64_t st = 0;
  std::vector<std::int64_t> vt;
  std::int64_t tt = 0;

  bool operator==(const Time&) const = default;

  static constexpr auto fields() {
    return std::make_tuple(json::Field{"st", &Time::st}, json::Field{"vt", &Time::vt}, json::Field{"tt", &Time::tt});
  }
};

/// Colours in the service's notation, one for each state of an element.
struct Color {
  std::string show;
  std::string hover;
  std::string click;

  bool operator==(const Color&) const = default;

  static constexpr auto fields() {
    return std::make_tuple(json::Field{"show", &Color::show}, json::Field{"hover", &Color::hover},
                           json::Field{"click", &Color::click});
  }
};

struct MsgBottom {
  std::int64_t msgid = 0;
  std::string msg;
  std::string url;
  std::string color;
  std::int64_t back = 0;

  bool operator==(const MsgBottom&) const = default;

  static constexpr auto fields() {
    using M = MsgBottom;
    return std::make_tuple(json::Field{"msgid", &M::msgid}, json::Field{"msg", &M::msg}, json::Field{"url", &M::url},
                           json::Field{"color", &M::color}, json::Field{"back", &M::back});
  }
};

struct MsgTop {
  std::int64_t msgid = 0;
  /// The title, in the service's spelling.
  std::string tittle;
  std::string url;
  Color color;
  std::int64_t point = 0;
  std::int64_t type = 0;
  std::int64_t back = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;

  bool operator==(const MsgTop&) const = default;

  static constexpr auto fields() {
    using M = MsgTop;
    return std::make_tuple(
        json::Field{"msgid", &M::msgid}, json::Field{"tittle", &M::tittle}, json::Field{"url", &M::url},
        json::Field{"color", &M::color}, json::Field{"point", &M::point}, json::Field{"type", &M::type},
        json::Field{"back", &M::back}, json::Field{"width", &M::width}, json::Field{"height", &M::height});
  }
};

/// The two promotional messages.
struct Msg {
  MsgBottom msgBottom;
  MsgTop msgTop;

  bool operator==(const Msg&) const = default;

  static constexpr auto fields() {
    return std::make_tuple(json::Field{"msg_bottom", &Msg::msgBottom}, json::Field{"msg_top", &Msg::msgTop});
  }
};

}  // namespace wire

/// What the service answers to a heartbeat.
struct DataBody {
  std::int64_t ct = 0;
  wire::Time time;
  wire::Msg msg;
  /// Update information of no fixed shape.
  std::vector<JSONAny> upgrade;
  std::int64_t speedlimit = 0;

  bool operator==(const DataBody&) const = default;

  static constexpr auto fields() {
    using D = DataBody;
    return std::make_tuple(json::Field{"ct", &D::ct}, json::Field{"time", &D::time}, json::Field{"msg", &D::msg},
                           json::Field{"upgrade", &D::upgrade}, json::Field{"speedlimit", &D::speedlimit});
  }
};

}  // namespace quilex
