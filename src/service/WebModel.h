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

/// The client of the product's web service. Requests the guide two seconds after it is made, and sends a heartbeat
/// shortly after each local midnight; heartbeats that the machine slept through are sent one by one when it wakes. A
/// request that fails is not tried again. Main thread only; replies are read on other threads, and their results arrive
/// on the main thread.
class WebModel : public UpgradeInfoSource {
 public:
  /// The kinds of heartbeat, with the numbers that are sent.
  enum class HeartBeatType { Boot = 1, MidNight, HeartBeat };
  /// For the main application; the agent installs nothing.
  enum class InstallWay { Update, Reinstall };

  /// Posted on the notification centre after these replies. Only the last one has user information.
  struct Notification {
    /// A heartbeat's reply that could be deciphered.
    static constexpr const char* heartbeatUpdated = "HeartbeatUpdated";
    /// The end of a guide request, whatever its result.
    static constexpr const char* newFeatureUpdated = "NewFeatureUpdated";
    /// Posted right after it. If there is a guide, the user information is the left panel's `GuideDictionary`.
    static constexpr const char* leafletUpdated = "leafletUpdated";
  };

  /// Everything that the client uses; it must outlive the client.
  struct Services {
    /// Shared with the main application.
    SettingsSuite& suite;
    /// Of the agent alone.
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
  /// The last query of the catalogue, for the main application; the agent makes none.
  std::optional<VideoListRequest> latestRequest;
  /// The last heartbeat reply that could be deciphered; nothing if it was malformed.
  std::optional<HeartbeatResponse> heartbeatResponse;
  /// The counter that heartbeats carry, as it stood when the client was made.
  const std::int64_t ct;
  /// For the main application; the agent does not request it.
  std::optional<BaseInfoResponse> baseInfo;

 private:
  std::unique_ptr<HTTPSession> sessionManager_;

 public:
  /// The content of the last guide reply; nothing if it was malformed.
  std::optional<GuideModel> guideModel;

  /// The installation's identifier. Made on first use, unless this program or the main application has already made it.
  const std::string& userID();

  void requestGuideInfo();
  /// Calls the completion, if given, once, with the answer or nothing; never if the request cannot be made.
  void sendHeartbeat(HeartBeatType type, const std::string& n,
                     std::function<void(const std::optional<HeartbeatResponse>&)> completion = {});
  /// Calls the completion, if given, once, with the version on offer or nothing.
  void requestUpgradeInfo(const Completion& completion = {}) override;

  // Timer actions

  void refreshGudieInfo() { requestGuideInfo(); }
  void midnightRefresh();

 private:
  /// The deciphered text of a reply; nothing if the request failed or the reply cannot be deciphered.
  using Content = std::optional<std::string>;

  /// `read` makes the answer from the content on another thread; `receive` gets it on the main thread. False, and
  /// `receive` is never called, if the request cannot be made.
  template <typename Answer>
  bool send(envelope::Function function, const std::string& body,
            std::function<Answer(Content content, const std::stop_token& stop)> read,
            std::function<void(Answer answer)> receive);
  HTTPSession& session();
  /// Runs the work on another thread and keeps its token until it is done.
  void runBeside(BackgroundWork::Work work, std::function<void()> done);
  /// Sets the timer for the next midnight after that time, plus the jitter. If the calendar has no such midnight, no
  /// timer is set.
  void armMidnightTimer(WallClock::Time time);

  const std::string instURL_;
  std::optional<std::string> identifier_;
  const std::chrono::milliseconds jitter_;
  WallClock::Time midnight_;
  std::optional<Disposable> guideTimer_;
  std::optional<Disposable> midnightTimer_;
  /// The number of guide requests sent, and the number of the newest one whose reply has arrived.
  int guidesRequested_ = 0;
  int lastGuide_ = 0;
  /// Replies that are being read.
  std::list<std::optional<Disposable>> readings_;
};

}  // namespace quilex
