#include "service/WebModel.h"

#include <utility>

#include "base/JSONCoding.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

using namespace std::literals;

constexpr auto kGuideDelay = 2000ms;
constexpr auto kReplyTimeout = 2000ms;
/// Long enough for the largest reply over a line of 2 Mbit/s.
constexpr auto kLongestRequest = 5min;
/// In bytes. A guide contains its images; the other answers are a few texts, some of which are shown in a window.
constexpr std::size_t kMaximumGuideReply = std::size_t{64} << 20U;
constexpr std::size_t kMaximumReply = std::size_t{1} << 20U;

/// A random UUID (RFC 4122, version 4) in its standard form, in capitals.
std::string makeUUID(const UniformRandom& random) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string text = "xxxxxxxx-xxxx-4xxx-Vxxx-xxxxxxxxxxxx";
  for (char& character : text) {
    if (character == 'x') {
      character = kHexDigits[random(16)];
    } else if (character == 'V') {
      character = kHexDigits[8 + random(4)];
    }
  }
  return text;
}

/// Between zero and just under a minute, fixed for the life of the process, so that the installations do not all call
/// at once. The divisor is twice the largest number, which halves the two minutes; the service expects this spread.
std::chrono::milliseconds makeJitter(const UniformRandom& random) {
  const auto number = static_cast<double>(random(std::size_t{1} << 32U));
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::duration<double>(number / 8589934591.0 * 120.0));
}

}  // namespace

WebModel::WebModel(Services services)
    : services_(std::move(services)),
      ct(services_.standardDefaults.integer(settings::kCounter)),
      instURL_(services_.baseURL + "/inst.html"),
      jitter_(makeJitter(services_.random)) {
  guideTimer_ = services_.runLoop.after(kGuideDelay, [this] { refreshGudieInfo(); });
  armMidnightTimer(services_.wallClock.startOfDay(services_.wallClock.now()));
}

const std::string& WebModel::userID() {
  if (!identifier_) {
    identifier_ = services_.suite.string(settings::kUserID);
  }
  if (!identifier_) {
    identifier_ = makeUUID(services_.random);
    services_.suite.setString(settings::kUserID, *identifier_);
    services_.suite.synchronize();
  }
  return *identifier_;
}

void WebModel::armMidnightTimer(WallClock::Time time) {
  if (const auto next = services_.wallClock.addingOneDay(time)) {
    // Where clocks skip midnight the day begins at one o'clock, which must not shift the days after it.
    midnight_ = services_.wallClock.startOfDay(*next);
    midnightTimer_ = services_.wallClock.at(midnight_ + jitter_, [this] { midnightRefresh(); });
  }
}

void WebModel::midnightRefresh() {
  sendHeartbeat(HeartBeatType::MidNight, "1000");
  armMidnightTimer(midnight_);
}

HTTPSession& WebModel::session() {
  if (!sessionManager_) {
    sessionManager_ = services_.makeSession({"MACQuilex" + services_.version, kReplyTimeout, kLongestRequest});
  }
  return *sessionManager_;
}

void WebModel::runBeside(BackgroundWork::Work work, std::function<void()> done) {
  const auto reading = readings_.emplace(readings_.end());
  reading->emplace(services_.backgroundWork.run(std::move(work), [this, reading, finish = std::move(done)] {
    const auto finishing = finish;
    readings_.erase(reading);
    finishing();
  }));
}

template <typename Answer>
bool WebModel::send(envelope::Function function, const std::string& body,
                    std::function<Answer(Content content, const std::stop_token& stop)> read,
                    std::function<void(Answer answer)> receive) {
  auto form = envelope::form(function, body);
  if (!form) {
    return false;
  }
  const std::size_t limit = function == envelope::Function::guide ? kMaximumGuideReply : kMaximumReply;
  session().post({instURL_, envelope::kContentType, *std::move(form), limit},
                 [this, read = std::move(read), receive = std::move(receive)](std::optional<std::string> text) {
                   struct Reply {
                     std::optional<std::string> text;
                     std::optional<Answer> answer;
                   };
                   const auto reply = std::make_shared<Reply>(Reply{std::move(text), {}});
                   runBeside(
                       [reply, read](const std::stop_token& stop) {
                         // Replies may be large, so each stage frees the result of the one before.
                         Content content = reply->text ? envelope::read(*reply->text) : std::nullopt;
                         reply->text.reset();
                         reply->answer.emplace(read(std::move(content), stop));
                       },
                       [reply, receive] { receive(*std::move(reply->answer)); });
                 });
  return true;
}

void WebModel::requestGuideInfo() {
  using Answer = std::optional<GuideModel>;
  const auto read = [decodeImage = services_.decodeImage](Content content, const std::stop_token& stop) {
    auto response = content ? json::decodeText<GuideResponse>(*std::exchange(content, {})) : std::nullopt;
    return response ? std::make_optional<GuideModel>(*std::move(response), decodeImage, stop) : Answer();
  };
  const auto receive = [this, request = ++guidesRequested_](Answer model) {
    // Reading a large reply may take longer than reading the next one.
    if (request > lastGuide_) {
      lastGuide_ = request;
      guideModel.reset();
      guideModel = std::move(model);
    }
    services_.notificationCenter.post(Notification::newFeatureUpdated);
    services_.notificationCenter.post(Notification::leafletUpdated,
                                      guideModel ? std::any(guideModel->leftPanel) : std::any());
  };
  send<Answer>(envelope::Function::guide, envelope::guideBody(userID(), services_.version), read, receive);
}

void WebModel::sendHeartbeat(HeartBeatType type, const std::string& n,
                             std::function<void(const std::optional<HeartbeatResponse>&)> completion) {
  struct Answer {
    bool hasContent;
    std::optional<HeartbeatResponse> response;
  };
  const auto read = [](Content content, const std::stop_token& /*stop*/) {
    return Answer{content.has_value(), content ? json::decodeText<HeartbeatResponse>(*content) : std::nullopt};
  };
  const auto receive = [this, completion = std::move(completion)](const Answer& answer) {
    if (answer.hasContent) {
      heartbeatResponse = answer.response;
    }
    if (completion) {
      completion(answer.response);
    }
    if (answer.hasContent) {
      services_.notificationCenter.post(Notification::heartbeatUpdated);
    }
  };
  send<Answer>(envelope::Function::heartbeat,
               envelope::heartbeatBody(n, userID(), ct, services_.version, static_cast<int>(type)), read, receive);
}

void WebModel::requestUpgradeInfo(const Completion& completion) {
  using Answer = std::optional<UpgradeInfo>;
  const auto read = [](Content content, const std::stop_token& /*stop*/) {
    const auto reply = content ? json::parse(*content) : std::nullopt;
    const bool hasData = reply && reply->is_object() && reply->contains("data");
    auto info = hasData ? json::decode<UpgradeInfo>(reply->at("data")) : tl::unexpected(json::DecodingError{});
    return info ? Answer(*std::move(info)) : Answer();
  };
  const auto receive = [completion](const Answer& answer) {
    if (completion) {
      completion(answer);
    }
  };
  const bool sent =
      send<Answer>(envelope::Function::upgrade, envelope::guideBody(userID(), services_.version), read, receive);
  if (!sent && completion) {
    completion({});
  }
}

}  // namespace quilex
