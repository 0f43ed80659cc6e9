#include "platform/Color.h"
#include "service/Response.h"
#include "service/UpgradeInfo.h"
#include "service/VideoListRequest.h"
#include "support/ServiceFakes.h"

namespace quilex::test {

using namespace std::literals;
using json::DecodingError;
using Kind = DecodingError::Kind;

const std::string kVideo =
    R"({"id":1,"sign":"a","preurl":"b","title":"c","url":"d","description":"e","time":2,"size":3,"imgurl":"f",)"
    R"("imgsize":4,"tags":"g","ratio":"h","width":5,"height":6,"frame":7,"rate":8,"audio":9,"uptime":"i","down":10,)"
    R"("view":11,"author":"j","avatar":"k","avatarsize":12,"hp":"l","upcount":13})";

std::string enveloped(const std::string& data) {
  return R"({"status":-1,"info":"grüße","data":)" + data + "}";
}

/// Every value in the text must be there, with its type and not null, except for the free ones below "upgrade".
template <typename Value>
void expectStrict(const nlohmann::json& whole, const nlohmann::json::json_pointer& outer, const std::string& prefix) {
  const auto errorOf = [](const nlohmann::json& changed) { return json::decode<Value>(changed).error(); };
  const auto& container = whole.at(outer);
  for (const auto& [key, value] : container.items()) {
    const std::string path = prefix + key;
    const auto pointer = container.is_array() ? outer / std::stoul(key) : outer / key;
    auto changed = whole;
    changed[pointer] = nullptr;
    EXPECT_EQ(errorOf(changed), (DecodingError{Kind::valueNotFound, path}));
    changed[pointer] = true;
    EXPECT_EQ(errorOf(changed), (DecodingError{Kind::typeMismatch, path}));
    if (container.is_object()) {
      changed.at(outer).erase(key);
      EXPECT_EQ(errorOf(changed), (DecodingError{Kind::keyNotFound, path}));
    }
    if (value.is_structured() && key != "upgrade") {
      expectStrict<Value>(whole, pointer, path + ".");
    }
  }
}

template <typename Value>
void expectRoundTrip(const std::string& text) {
  const auto value = json::decodeText<Value>(text);
  ASSERT_TRUE(value) << text;
  EXPECT_EQ(json::encode(*value).dump(), text);
  auto whole = nlohmann::json::parse(text);
  expectStrict<Value>(whole, nlohmann::json::json_pointer(), "");
  whole["another"] = 1;
  EXPECT_EQ(json::decode<Value>(whole).value(), *value);
  EXPECT_EQ(json::decode<Value>(nlohmann::json::array()).error(), (DecodingError{Kind::typeMismatch, ""}));
}

TEST(FormatsTest, EveryRecordKeepsItsKeysInOrderAndRequiresEachWithItsType) {
  expectRoundTrip<HeartbeatResponse>(kHeartbeatReply);
  expectRoundTrip<BaseInfoResponse>(
      enveloped(R"({"cate":[{"id":1,"title":"a"},{"id":2,"title":"b"}],"hottags":["c"],"hotkey":["d","e"]})"));
  expectRoundTrip<VideoListResponse>(
      enveloped(R"({"pages":1,"page":2,"total":3,"count":4,"vlist":[)" + kVideo + "," + kVideo + "]}"));
  expectRoundTrip<KeywordResponse>(enveloped(R"(["a","b"])"));
  expectRoundTrip<VideoDetailResponse>(enveloped(kVideo));
  expectRoundTrip<GuideResponse>(
      enveloped(R"({"leftPanel":["a"],"leftPanelUrl":["b"],"window":["c"],"windowUrl":["d"],"browser":["e"],)"
                R"("browserUrl":["f"],"newFeature":["g"],"newFeatureUrl":["h","i"]})"));
  expectRoundTrip<VideoListRequest>(R"({"ui":"a","cate":1,"page":2,"keywords":"b","sort":3,"author":"c"})");
  expectRoundTrip<UpgradeInfo>(R"({"url":"a","md5":"b","ver":"c","exp":"d"})");
}

TEST(FormatsTest, IntegersAreThoseOf64BitsHoweverWritten) {
  const auto viewOf = [](const std::string& value) {
    auto object = nlohmann::json::parse(kVideo);
    object["view"] = nlohmann::json::parse(value);
    const auto video = json::decode<VideoDetail>(object);
    return video ? std::optional(video->view) : std::nullopt;
  };
  EXPECT_EQ(viewOf("1e2"), 100);
  EXPECT_EQ(viewOf("-9223372036854775808.0"), std::numeric_limits<std::int64_t>::min());
  for (const char* value : {"1.5", "9223372036854775808", "9223372036854775808.0", "\"12\""}) {
    EXPECT_FALSE(viewOf(value)) << value;
  }
}

TEST(JSONParsingTest, RefusesWhatIsMalformedOrTooLarge) {
  const auto nested = [](std::size_t depth, const std::string& open, const std::string& close) {
    std::string before, after;
    for (; depth > 0; --depth) {
      (before += open, after += close);
    }
    return before + "1" + after;
  };
  for (const auto& [open, close] : {std::pair("["s, "]"s), {"{\"a\":", "}"}, {"[[1],", "]"}}) {
    EXPECT_EQ(json::encode(json::decodeText<JSONAny>(nested(127, open, close)).value()).dump(),
              nested(127, open, close));
    EXPECT_FALSE(json::parse(nested(129, open, close)));
    EXPECT_FALSE(json::parse(nested(200'000, open, close)));
    EXPECT_FALSE(json::parse(nested(200'000, open, "")));
  }
  const auto flat = [](std::size_t values) { return nlohmann::json(std::vector(values - 1, 0)).dump(); };
  EXPECT_TRUE(json::parse(flat(100'000)));
  EXPECT_FALSE(json::parse(flat(100'001)));
  for (const char* text : {"", "{", "[1,]", "{\"a\":1", "nul", "1 2", "\"\xff\"", "\"\\ud800\"", "1e999", "'a'"}) {
    EXPECT_FALSE(json::parse(text)) << text;
  }
}

}  // namespace quilex::test
