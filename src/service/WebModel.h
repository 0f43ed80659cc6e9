#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "platform/BackgroundWork.h"
#include "platform/HTTPSession.h"
#include "platform/Image.h"
#include "platform/NotificationCenter.h"
#include "platform/RandomSource.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"
#include "platform/WallClock.h"
#include "service/Envelope.h"
#include "service/GuideModel.h"
#include "service/Response.h"
#include "service/UpgradeInfoSource.h"
#include "service/VideoListRequest.h"

namespace quilex {

/// The client of the product's web service. Asks for the guide two seconds after it is made, and sends a heartbeat
/// shortly after each local midnight; those that the machine slept through are made up for, one by one, when it wakes.
/// A request that fails is not tried again, and nobody is notified. Main thread only; replies are read beside it, so
/// that a large one holds nothing up, and what comes of them is handed over there.
class WebModel : public UpgradeInfoSource {
 public:
  /// The kinds of heartbeat, with the numbers that are sent.
  enum class HeartBeatType { Boot = 1, MidNight, HeartBeat };
  enum class InstallWay { Update, Reinstall };

  /// Posted on the notification centre after each reply that is named, without user information unless it is told.
  struct Notification {
    /// A heartbeat's reply that deciphered.
    static constexpr const char* heartbeatUpdated = "HeartbeatUpdated";
    /// Any end of a guide request.
    static constexpr const char* newFeatureUpdated = "NewFeatureUpdated";
    /// The same; the user information is the left panel's `GuideDictionary`, if there is a guide.
    static constexpr const char* leafletUpdated = "leafletUpdated";
  };

  /// What the client works with; all of it must outlive the client.
  struct Services {
    /// Shared with the main application.
    SettingsSuite& suite;
    /// The agent's own.
    SettingsSuite& standardDefaults;
    RunLoop& runLoop;
    BackgroundWork& backgroundWork;
    WallClock& wallClock;
    NotificationCenter& notificationCenter;
    HTTPSessionFactory makeSession;
    DecodeImage decodeImage;
    UniformRandom random;
    /// The service's origin, without a slash at its end.
    std::string baseURL;
    /// `AppInfo::version`.
    std::string version;
  };

  explicit WebModel(Services services);
  /// Ends the schedule and drops the requests that are under way, without calling their completions.
  ~WebModel() override = default;
  WebModel(const WebModel&) = delete;
  WebModel& operator=(const WebModel&) = delete;

  /// The instance of this process.
  static WebModel& shared();

 private:
  Services services_;

 public:
  /// The last query of the catalogue; the agent makes none.
  std::optional<VideoListRequest> latestRequest;
  /// The last heartbeat's reply that deciphered, if it was an answer.
  std::optional<HeartbeatResponse> heartbeatResponse;
  /// The counter that heartbeats carry, as it stood when the client was made.
  const std::int64_t ct;
  /// The agent asks for none.
  std::optional<BaseInfoResponse> baseInfo;

 private:
  std::unique_ptr<HTTPSession> sessionManager_;

 public:
  /// The content of the last guide reply, if it was an answer.
  std::optional<GuideModel> guideModel;

  /// The installation's identifier, made when neither this program nor the main application has made it before.
  const std::string& userID();

  void requestGuideInfo();
  /// Calls the completion, if given, once, with the reply's answer or nothing; not when the request cannot be made.
  void sendHeartbeat(HeartBeatType type, const std::string& n,
                     std::function<void(const std::optional<HeartbeatResponse>&)> completion = {});
  /// Calls the completion, if given, once, with the version on offer or nothing.
  void requestUpgradeInfo(const Completion& completion = {}) override;

  // Timer actions

  void refreshGudieInfo() { requestGuideInfo(); }
  void midnightRefresh();

 private:
  /// The content of a reply: the text that it carries, or nothing when the request failed or does not decipher.
  using Content = std::optional<std::string>;

  /// False, and `receive` is never called, when the request cannot be made. `read` makes the answer of the content, on
  /// another thread; `receive` gets it, on this one.
  template <typename Answer>
  bool send(envelope::Function function, const std::string& body,
            std::function<Answer(Content content, const std::stop_token& stop)> read,
            std::function<void(Answer answer)> receive);
  HTTPSession& session();
  /// Starts reading and keeps its token until it is done.
  void runBeside(BackgroundWork::Work work, std::function<void()> done);
  /// Waits for the midnight that follows that time on the calendar, and the jitter; without such a midnight for
  /// nothing.
  void armMidnightTimer(WallClock::Time time);

  const std::string instURL_;
  std::optional<std::string> identifier_;
  const std::chrono::milliseconds jitter_;
  WallClock::Time midnight_;
  std::optional<Disposable> guideTimer_;
  std::optional<Disposable> midnightTimer_;
  /// Guide requests, counted: those sent, and the last one whose reply was handed over.
  int guidesRequested_ = 0;
  int lastGuide_ = 0;
  /// Replies that are being read.
  std::list<std::optional<Disposable>> readings_;
};

}  // namespace quilex
