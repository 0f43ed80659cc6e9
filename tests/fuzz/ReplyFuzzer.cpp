// Feeds the service's client with replies: the raw input, and the input enciphered as the service would do it.

#include <cstdlib>

#include "service/Cipher.h"
#include "service/WebModel.h"
#include "support/ServiceFakes.h"

namespace quilex::test {
namespace {

void require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

/// A decoded value must stay the same when it is encoded and decoded again.
template <typename... Values>
void checkFormats(const std::string& text) {
  const auto check = [](const auto& value) {
    using Value = std::remove_cvref_t<decltype(*value)>;
    require(!value || json::decodeText<Value>(json::encode(*value).dump()) == *value);
  };
  (check(json::decodeText<Values>(text)), ...);
}

void checkClient(const std::string& reply) {
  FakeRunLoop runLoop;
  FakeBackgroundWork backgroundWork(runLoop);
  FakeWallClock clock(runLoop);
  FakeSettingsSuite suite;
  NotificationCenter center;
  std::vector<FakeHTTPSession::Request> requests;
  const auto decodeImage = [](std::string_view bytes, std::size_t /*pixels*/, const std::stop_token& /*stop*/) {
    return bytes.empty() ? DecodedImage() : DecodedImage{std::make_shared<Image>(), 1};
  };
  WebModel model({suite, suite, runLoop, backgroundWork, clock, center,
                  [&](const auto& /*configuration*/) { return std::make_unique<FakeHTTPSession>(runLoop, requests); },
                  decodeImage, [](std::size_t /*bound*/) { return 0U; }, "https://service.example", "1.0.0.0"});
  int completions = 0;
  model.requestGuideInfo();
  model.sendHeartbeat(WebModel::HeartBeatType::MidNight, reply, [&](const auto& /*response*/) { ++completions; });
  model.requestUpgradeInfo([&](const auto& /*info*/) { ++completions; });
  for (const auto& request : requests) {
    request.reply(reply);
  }
  runLoop.advance(FakeRunLoop::Time(0));
  require(completions == 2);
}

}  // namespace
}  // namespace quilex::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  using namespace quilex;
  test::checkFormats<BaseInfoResponse, HeartbeatResponse, VideoListResponse, KeywordResponse, VideoDetailResponse,
                     GuideResponse, VideoListRequest, UpgradeInfo, JSONAny>(input);
  quilex::test::checkClient(input);
  quilex::test::checkClient(quilex::encryptToBase64(input).value());
  return 0;
}
