#pragma once

#include <QTimer>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "base/ObserverList.h"
#include "linux/media/MediaStream.h"
#include "linux/player/MpvNode.h"
#include "linux/player/MpvReport.h"
#include "linux/player/SoundOutput.h"
#include "linux/player/StreamProtocol.h"
#include "linux/render/VideoOutput.h"
#include "linux/toolkit/loop/Wakeup.h"
#include "platform/StatusReport.h"
#include "platform/VideoPlayer.h"

namespace quilex {

/// The player over libmpv: one core that draws into a VideoOutput. All requests to the core are asynchronous. A core
/// that cannot be made stops the process.
///
/// The core never opens a file: it reads each item from a stream of ours.
class MpvPlayer : public VideoPlayer {
 public:
  /// Writes into `report` how it decodes and what it cannot play. Both must outlive the player.
  MpvPlayer(VideoOutput& output, StatusReport& report);
  ~MpvPlayer() override;

  void play() override;
  void pause() override;
  void setHeld(bool isHeld) override;
  bool hasCurrentItem() const override { return !item_.empty(); }
  void replaceCurrentItem(const std::filesystem::path& file) override;
  void seekToZero() override;
  void setRepeating(bool repeats) override;
  float volume() const override { return amplitude_; }
  void setVolume(float amplitude) override;
  bool isMuted() const override { return muted_; }
  void setMuted(bool muted) override;
  [[nodiscard]] Disposable observeStatus(std::function<void(PlayerItemStatus)> handler) override;
  [[nodiscard]] Disposable observeItemEnd(std::function<void()> handler) override;

 private:
  void load();
  void handOver();
  void begin();
  void applyPause();
  MpvTexts itemOptions(const MediaStream::Facts& facts) const;
  void drainEvents();
  void handle(const mpv_event& event);
  void restarted();
  void handleChange(std::uint64_t property, const mpv_event_property& change);
  void handleEnd(const mpv_event_end_file& end);
  void failed();
  void refuse(const char* reason);
  void watchEnd();
  void raiseEnd();
  void setStatus(PlayerItemStatus newStatus);
  void setFlag(const char* property, bool value);

  VideoOutput& videoOutput_;
  StatusReport& report_;
  StreamProtocol protocol_;
  MpvHandle core_;
  MpvReport coreReport_;
  SoundOutput sound_;
  Wakeup wakeup_;
  Wakeup streamOpened_;
  /// Runs while an item is being opened.
  QTimer patience_;
  /// Runs while a repeating item cannot be played, since a disk may come back.
  QTimer retry_;
  std::chrono::seconds retryPause_{};
  /// Why the item could not be played, as printed last.
  std::string refusal_;
  std::shared_ptr<MediaStream> stream_;
  /// The form of the item's stream, and the form to ask for when the item is loaded again.
  MediaStream::Form form_ = MediaStream::Form::packets;
  MediaStream::Form suitable_ = MediaStream::Form::packets;
  bool repeating_ = false;
  float amplitude_ = 1;
  bool muted_ = false;
  bool paused_ = true;
  bool held_ = false;
  /// Whether the stream is open and is handed over once the player is released.
  bool isHeldBack_ = false;
  std::filesystem::path item_;
  /// How many loads there were; answers to an older one are stale.
  std::uint64_t loads_ = 0;
  /// The core's own number for the current item; 0 before its reply.
  std::int64_t playlistEntry_ = 0;
  /// Whether the core has begun with the current item.
  bool started_ = false;
  /// Whether there was a frame since then.
  bool restarted_ = false;
  PlayerItemStatus status_ = PlayerItemStatus::unknown;
  bool ended_ = false;
  ObserverList<PlayerItemStatus> statusObservers_;
  ObserverList<> endObservers_;
};

/// libmpv's volume (percent, the cube root of the gain; see its manual on --volume) of a linear amplitude of 0 to 1.
double cubicVolume(float amplitude);

}  // namespace quilex
