#include "service/WebModel.h"

#include <utility>

#include "library/JSONCoding.h"

namespace quilex {

namespace {

using namespace std::literals;

constexpr auto kGuideDelay = 2000ms;
constexpr auto kReplyTimeout = 2000ms;
constexpr std::size_t kMaximumReplySize = std::size_t{64} << 20U;
constexpr const char* kUserIDKey = "uuid";
constexpr const char* kCounterKey = "ct";

/// A random UUID (RFC 4122, version 4) in its standard form, in capitals.
std::string makeUUID(const UniformRandom& random) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = "xxxxxxxx-xxxx-4xxx-Vxxx-xxxxxxxxxxxx";
  for (char& character : text) {
    if (character == 'x') {
      character = kDigits[random(16)];
    } else if (character == 'V') {
      character = kDigits[8 + random(4)];
    }
  }
  return text;
}

/// From nothing to just under a minute, fixed for the life of the process, so that the installations do not all call
/// at once. The divisor is about twice what would make it two minutes; the service counts on this spread.
std::chrono::milliseconds makeJitter(const UniformRandom& random) {
  const auto number = static_cast<double>(random(std::size_t{1} << 32U));
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::duration<double>(number / 8589934591.0 * 120.0));
}

}  // namespace

WebModel::WebModel(Services clientServices)
    : services(std::move(clientServices)),
      ct(services.standardDefaults.integer(kCounterKey)),
      instURL(services.baseURL + "/inst.html"),
      jitter(makeJitter(services.random)) {
  guideTimer = services.runLoop.after(kGuideDelay, [this] { refreshGudieInfo(); });
  armMidnightTimer(services.wallClock.startOfDay(services.wallClock.now()));
}

const std::string& WebModel::userID() {
  if (!identifier) {
    identifier = services.suite.string(kUserIDKey);
  }
  if (!identifier) {
    identifier = makeUUID(services.random);
    services.suite.setString(kUserIDKey, *identifier);
    services.suite.synchronize();
  }
  return *identifier;
}

void WebModel::armMidnightTimer(WallClock::Time time) {
  if (const auto next = services.wallClock.addingOneDay(time)) {
    // A day that begins at one o'clock, for want of a midnight, must not move the days after it.
    midnight = services.wallClock.startOfDay(*next);
    midnightTimer = services.wallClock.at(midnight + jitter, [this] { midnightRefresh(); });
  }
}

void WebModel::midnightRefresh() {
  sendHeartbeat(HeartBeatType::MidNight, "1000");
  armMidnightTimer(midnight);
}

HTTPSession& WebModel::session() {
  if (!sessionManager) {
    sessionManager = services.makeSession({"MACQuilex" + services.version, kReplyTimeout, kMaximumReplySize});
  }
  return *sessionManager;
}

bool WebModel::send(envelope::Function function, const std::string& body, ReplyHandler reply) {
  const auto form = envelope::form(function, body);
  if (!form) {
    return false;
  }
  session().post(instURL, envelope::kContentType, *form, [reply = std::move(reply)](std::optional<std::string> text) {
    // The service may send much, so that each stage drops what the one before it made.
    auto content = text ? envelope::read(*text) : std::nullopt;
    text.reset();
    reply(std::move(content));
  });
  return true;
}

void WebModel::requestGuideInfo() {
  send(envelope::Function::guide, envelope::guideBody(userID(), services.version),
       [this](std::optional<std::string> text) { receiveGuide(std::move(text)); });
}

void WebModel::receiveGuide(std::optional<std::string> text) {
  guideModel.reset();
  if (auto response = text ? json::decodeText<GuideResponse>(*std::exchange(text, {})) : std::nullopt) {
    guideModel.emplace(*std::move(response), services.decodeImage);
  }
  services.notificationCenter.post(Notification::newFeatureUpdated);
  services.notificationCenter.post(Notification::leafletUpdated,
                                   guideModel ? std::any(guideModel->leftPanel) : std::any());
}

void WebModel::sendHeartbeat(HeartBeatType type, const std::string& n,
                             std::function<void(const std::optional<HeartbeatResponse>&)> completion) {
  const auto receive = [this, completion = std::move(completion)](const std::optional<std::string>& text) {
    if (text) {
      heartbeatResponse = json::decodeText<HeartbeatResponse>(*text);
    }
    if (completion) {
      completion(text ? heartbeatResponse : std::nullopt);
    }
    if (text) {
      services.notificationCenter.post(Notification::heartbeatUpdated);
    }
  };
  send(envelope::Function::heartbeat,
       envelope::heartbeatBody(n, userID(), ct, services.version, static_cast<int>(type)), receive);
}

void WebModel::requestUpgradeInfo(const std::function<void(const std::optional<UpgradeInfo>&)>& completion) {
  const auto receive = [completion](const std::optional<std::string>& text) {
    if (!completion) {
      return;
    }
    const auto answer = text ? json::parse(*text) : std::nullopt;
    const bool hasData = answer && answer->is_object() && answer->contains("data");
    const auto info = hasData ? json::decode<UpgradeInfo>(answer->at("data")) : json::DecodingError{};
    const auto* const upgrade = std::get_if<UpgradeInfo>(&info);
    completion(upgrade == nullptr ? std::nullopt : std::optional(*upgrade));
  };
  const bool sent = send(envelope::Function::upgrade, envelope::guideBody(userID(), services.version), receive);
  if (!sent && completion) {
    completion({});
  }
}

}  // namespace quilex
