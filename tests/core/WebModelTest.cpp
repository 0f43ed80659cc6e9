#include "service/Base64.h"
#include "service/Cipher.h"
#include "service/WebModel.h"
#include "support/ServiceFakes.h"

namespace quilex::test {

using namespace std::literals;
using Milliseconds = std::chrono::milliseconds;

constexpr const char* kUserID = "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0";
constexpr std::size_t k32Bits = std::size_t{1} << 32U;

struct FakeImage : Image {
  explicit FakeImage(std::string_view imageBytes) : bytes(imageBytes) {}
  std::string bytes;
};

/// Decodes "picture" and a digit as an image of one pixel, or of as many as a number after them says.
DecodedImage decodeFakeImage(std::string_view bytes, std::size_t maximumPixels, const std::stop_token& /*stop*/) {
  const auto pixels = bytes.size() < 10 ? 1 : std::stoul(std::string(bytes.substr(9)));
  const bool isTaken = bytes.starts_with("picture") && pixels <= maximumPixels;
  return isTaken ? DecodedImage{std::make_shared<FakeImage>(bytes), pixels} : DecodedImage();
}

std::string guideReply(const std::string& pictures, const std::string& addresses) {
  return R"({"status":1,"info":"","data":{"leftPanel":)" + pictures + R"(,"leftPanelUrl":)" + addresses +
         R"(,"window":[],"windowUrl":[],"browser":[],"browserUrl":[],"newFeature":["cGljdHVyZTE="],)"
         R"("newFeatureUrl":["c"]}})";
}

struct WebModelTest : testing::Test {
  WebModelTest() {
    suite.values = {{"uuid", kUserID}};
    for (const char* name : {"HeartbeatUpdated", "NewFeatureUpdated", "leafletUpdated"}) {
      tokens.push_back(center.observe(name, [this, name](const std::any& userInfo) {
        log += " "s + name;
        if (userInfo.has_value()) {
          leaflet = std::any_cast<GuideDictionary>(userInfo);
          log += "+" + std::to_string(leaflet.size());
        }
      }));
    }
  }
  WebModel& make() {
    return model.emplace(WebModel::Services{
        suite, standardDefaults, runLoop, backgroundWork, clock, center,
        [this](const HTTPSessionConfiguration& configuration) {
          sessions += " " + configuration.userAgent + "/" + std::to_string(configuration.timeout.count()) + "/" +
                      std::to_string(configuration.longest.count());
          return std::make_unique<FakeHTTPSession>(runLoop, requests);
        },
        decodeFakeImage, [this](std::size_t bound) { return bound == k32Bits ? random : ++digits % bound; },
        "https://service.example", "1.0.0.0"});
  }
  /// Answers the last request with the text, enciphered as the service would do it.
  void answer(const std::string& text) { answerRaw(encryptToBase64(text)); }
  void answerRaw(std::optional<std::string> reply) {
    requests.back().reply(std::move(reply));
    runLoop.advance(0s);
  }
  /// When a client that starts at that time of the first day sends heartbeats in the next four days.
  std::vector<Milliseconds> heartbeatsFrom(Milliseconds start) {
    clock.start = WallClock::Time(start);
    runLoop.now = 0s;
    requests.clear();
    make();
    runLoop.advance(100h);
    return heartbeats();
  }
  std::vector<Milliseconds> heartbeats() const {
    std::vector<Milliseconds> times;
    for (const auto& request : requests) {
      request.sent.body.starts_with("f=21&") ? times.push_back(request.time) : void();
    }
    return times;
  }
  FakeRunLoop runLoop;
  FakeBackgroundWork backgroundWork{runLoop};
  FakeWallClock clock{runLoop};
  FakeSettingsSuite suite;
  FakeSettingsSuite standardDefaults;
  NotificationCenter center;
  std::size_t random = k32Bits / 2;
  std::size_t digits = 0;
  std::string sessions;
  std::vector<FakeHTTPSession::Request> requests;
  std::string log;
  GuideDictionary leaflet;
  std::vector<Disposable> tokens;
  std::optional<WebModel> model;
};

TEST_F(WebModelTest, HeartbeatsGoOutAtEachLocalMidnightAndTheJitter) {
  // Days may be an hour shorter or longer; the one that begins at one o'clock has no midnight.
  const std::pair<Milliseconds, std::vector<FakeWallClock::Day>> cases[] = {
      {23h + 59min + 30s, {{0h}, {24h}, {48h}, {72h}}},
      {0s, {{0h}, {24h}, {48h}, {72h}}},
      {1h, {{0h}, {23h}, {48h}, {72h}}},
      {1h, {{0h}, {24h, 1h}, {47h}, {71h}}}};
  for (const auto& [start, days] : cases) {
    clock.days = days;
    std::vector<Milliseconds> expected;
    for (std::size_t day = 1; day < days.size(); ++day) {
      expected.push_back(days[day].start + 30s - start);
    }
    EXPECT_EQ(heartbeatsFrom(start), expected) << &days - &cases[0].second;
  }
  clock.days = {{0h}, {24h}};
  for (const auto& [number, jitter] : {std::pair(std::size_t{0}, 0ms), {k32Bits - 1, 59999ms}}) {
    random = number;
    EXPECT_EQ(heartbeatsFrom(0s).at(0), 24h + jitter);
  }
}

TEST_F(WebModelTest, MidnightsThatTheMachineSleptThroughAreMadeUpForOneByOne) {
  clock.start = WallClock::Time(1h);
  make();
  clock.start += 48h;
  runLoop.advance(23h + 30s);
  EXPECT_EQ(heartbeats(), (std::vector<Milliseconds>(3, 23h + 30s)));
  runLoop.advance(24h);
  EXPECT_EQ(heartbeats().size(), 4U);
}

TEST_F(WebModelTest, RequestsAreExactAndShareOneSession) {
  standardDefaults.values = {{"ct", 7L}};
  make();
  standardDefaults.values = {{"ct", 8L}};
  runLoop.advance(1999ms);
  EXPECT_EQ(sessions, "");
  runLoop.advance(1h);
  model->sendHeartbeat(WebModel::HeartBeatType::Boot, "n");
  model->requestUpgradeInfo();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[0].time, 2s);
  EXPECT_EQ(sessions, " MACQuilex1.0.0.0/2000/300000");
  EXPECT_EQ(requests[1].sent.body,
            envelope::form(envelope::Function::heartbeat, envelope::heartbeatBody("n", kUserID, 7, "1.0.0.0", 1)));
  EXPECT_EQ(requests[2].sent.body,
            envelope::form(envelope::Function::upgrade, envelope::guideBody(kUserID, "1.0.0.0")));
  for (const auto& request : requests) {
    EXPECT_EQ(request.sent.maximumReplySize, (request.time == 2s ? 64U : 1U) << 20U);
    EXPECT_EQ(request.sent.url, "https://service.example/inst.html");
  }
  answer("{}");
  EXPECT_EQ(log, "") << "an update reply without a completion";
}

TEST_F(WebModelTest, AUserIdentifierOfAnotherTypeIsReplacedButAnEmptyOneIsNot) {
  suite.values = {{"uuid", 1L}};
  EXPECT_EQ(make().userID(), "12345678-9ABC-4DEF-8123-456789ABCDEF");
  EXPECT_EQ(std::pair(suite.writes, suite.synchronisations), std::pair(" uuid=" + model->userID(), 1));
  suite.values = {{"uuid", ""s}};
  EXPECT_EQ(make().userID(), "");
}

TEST_F(WebModelTest, AHeartbeatIsKeptUnlessItFails) {
  make();
  int calls = 0;
  const auto beat = [&](const std::optional<std::string>& reply) {
    std::optional<HeartbeatResponse> given;
    model->sendHeartbeat(WebModel::HeartBeatType::HeartBeat, "", [&](const auto& response) {
      (++calls, given = response);
      EXPECT_EQ(log, "") << "the completion comes before the notification";
    });
    answerRaw(reply);
    return given;
  };
  EXPECT_EQ(beat(encryptToBase64("\0"s + kHeartbeatReply + "\0\0"s))->data.ct, 5);
  EXPECT_EQ(std::exchange(log, ""), " HeartbeatUpdated");
  for (const std::optional<std::string>& failure : {std::optional<std::string>(), {"<html>"}, {"AAAA"}}) {
    EXPECT_FALSE(beat(failure));
    EXPECT_EQ(log + std::to_string(model->heartbeatResponse->data.ct), "5");
  }
  EXPECT_FALSE(beat(encryptToBase64("{}")) || model->heartbeatResponse);
  EXPECT_EQ(log + std::to_string(calls), " HeartbeatUpdated5");
}

TEST_F(WebModelTest, AnUpdateCheckIsAnsweredOnceWhateverComes) {
  make();
  std::vector<std::optional<UpgradeInfo>> answers;
  const auto check = [&](const std::optional<std::string>& reply) {
    model->requestUpgradeInfo([&](const auto& info) { answers.push_back(info); });
    answerRaw(reply);
  };
  check(encryptToBase64(R"({"data":{"url":"u","md5":"m","ver":"2.0","exp":"e","more":1}})"));
  check({});
  check("502");
  for (const char* text : {"{", "[]", "{}", R"({"data":null})", R"({"data":{"url":"u","ver":"2.0","exp":"e"}})"}) {
    check(encryptToBase64(text));
  }
  std::vector<std::optional<UpgradeInfo>> expected(8);
  expected[0] = {"u", "m", "2.0", "e"};
  EXPECT_EQ(answers, expected);
}

TEST_F(WebModelTest, RepliesAreReadBesideTheMainThreadAndTheLatestGuideStays) {
  make();
  model->requestGuideInfo();
  model->requestGuideInfo();
  requests[1].reply(encryptToBase64(guideReply(R"(["cGljdHVyZTE="])", R"(["a"])")));
  requests[0].reply({});
  EXPECT_EQ(log, "") << "handed over from inside the reply";
  runLoop.advance(0s);
  EXPECT_EQ(std::exchange(log, ""), " NewFeatureUpdated leafletUpdated+1 NewFeatureUpdated leafletUpdated+1");
  model->sendHeartbeat(WebModel::HeartBeatType::Boot, "", [](const auto& /*response*/) { ADD_FAILURE(); });
  requests[2].reply(encryptToBase64(kHeartbeatReply));
  model.reset();
  runLoop.advance(0s);
  EXPECT_EQ(log, "");
}

TEST(GuideModelTest, WhatIsBeyondTheLimitsIsLeftOutAndTheRestStays) {
  const auto guide = [](std::vector<std::string> pictures, const std::stop_token& stop = {}) {
    GuideResponse reply;
    reply.data.leftPanelUrl.resize(pictures.size(), "a");
    reply.data.leftPanel = std::move(pictures);
    reply.data.newFeature = {base64Encode("picture1"), base64Encode("picture1")};
    reply.data.newFeatureUrl = {"b", "b"};
    const GuideModel model(reply, decodeFakeImage, stop);
    return std::pair(model.leftPanel.size(), model.newFeature.size());
  };
  const std::string small = base64Encode("picture1");
  // One pixel is left for the two of the other dictionary.
  EXPECT_EQ(guide({base64Encode("picture1 64000001"), base64Encode("picture1 40000000"),
                   base64Encode("picture1 30000000"), base64Encode("picture1 23999999")}),
            std::pair(2UL, 1UL));
  EXPECT_EQ(guide(std::vector(65, small)), std::pair(64UL, 2UL));
  const std::string longest = base64Encode("picture1  0001 ") + std::string((32U << 20U) - 20, 'A');
  EXPECT_EQ(guide({longest, longest + "AAAA", small}), std::pair(2UL, 2UL));
  std::stop_source stopped;
  stopped.request_stop();
  EXPECT_EQ(guide({small}, stopped.get_token()), std::pair(0UL, 0UL));
}

TEST_F(WebModelTest, TheGuidePairsPicturesWithAddresses) {
  make();
  const std::tuple<std::string, std::string, std::map<std::string, std::string>> cases[] = {
      {R"(["data:image/png;base64,cGljdHVyZTE=","x,,cGljdHVyZTI=,,","cGljdHVyZTM="])",
       R"(["a","b"])",
       {{"picture1", "a"}, {"picture2", "b"}}},
      {R"(["  ",",,","cGljdHVyZTE","bm9uZQ==","cGljdHVyZTI="])", R"(["a","a","a","a","b"])", {{"picture2", "b"}}},
      {R"(["cGljdHVyZTE=","cGljdHVyZTI=","cGljdHVyZTM="])", R"(["a b","","c"])", {{"picture3", "c"}}}};
  for (const auto& [pictures, addresses, expected] : cases) {
    model->requestGuideInfo();
    answer(guideReply(pictures, addresses));
    std::map<std::string, std::string> pairs;
    for (const auto& [image, url] : leaflet) {
      pairs[dynamic_cast<FakeImage&>(*image).bytes] = url.string();
    }
    EXPECT_EQ(pairs, expected);
    EXPECT_EQ(std::exchange(log, ""), " NewFeatureUpdated leafletUpdated+" + std::to_string(expected.size()));
    EXPECT_TRUE(model->guideModel->newFeature.size() == 1 && !model->guideModel->response);
  }
  for (const auto& failure : {std::optional<std::string>(), {"<html>"}, encryptToBase64(guideReply("[]", "[1]"))}) {
    model->requestGuideInfo();
    answerRaw(failure);
    EXPECT_EQ(std::exchange(log, ""), " NewFeatureUpdated leafletUpdated");
    EXPECT_FALSE(model->guideModel);
  }
}

}  // namespace quilex::test
