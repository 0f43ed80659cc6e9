#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "app/ObserverList.h"
#include "linux/mpv/MpvHandle.h"
#include "linux/qt/Wakeup.h"
#include "linux/render/VideoOutput.h"
#include "platform/VideoPlayer.h"

namespace quilex {

/// The player over libmpv: one core that draws into a VideoOutput. All requests to the core are asynchronous. A core
/// that cannot be made stops the process.
///
/// An item that is sought back to its start at its end is likely to be wanted again and again. It then goes on without
/// a gap from run to run; the end of each is told as before, with the next one's first frame on screen.
class MpvPlayer : public VideoPlayer {
 public:
  /// `output` must outlive the player.
  explicit MpvPlayer(VideoOutput& output);
  ~MpvPlayer() override;

  void play() override;
  void pause() override;
  bool hasCurrentItem() const override { return !item.empty(); }
  void replaceCurrentItem(const std::filesystem::path& file) override;
  void seekToZero() override;
  void setRepeating(bool repeats) override { repeating = repeats; }
  float volume() const override { return amplitude; }
  void setVolume(float newAmplitude) override;
  bool isMuted() const override { return muted; }
  void setMuted(bool mute) override;
  [[nodiscard]] Disposable observeStatus(std::function<void(PlayerItemStatus)> handler) override;
  [[nodiscard]] Disposable observeItemEnd(std::function<void()> handler) override;

 private:
  /// How the core has been given the item: as the file itself, or as many runs of it without a gap.
  enum class Form { once, repeated };

  void load(Form newForm);
  void drainEvents();
  void handle(const mpv_event& event);
  void handleChange(std::uint64_t property, const mpv_event_property& change);
  void enterRun(std::int64_t number);
  void handleEnd(const mpv_event_end_file& end);
  void failed();
  void raiseEnd();
  void setStatus(PlayerItemStatus newStatus);
  void setFlag(const char* property, bool value);

  VideoOutput& videoOutput;
  MpvHandle core;
  Wakeup wakeup;
  float amplitude = 1;
  bool muted = false;
  std::filesystem::path item;
  /// Counts the items handed to the core; answers that concern an older one are stale.
  std::uint64_t generation = 0;
  /// The core's own name for the current item; 0 until it has told it.
  std::int64_t playlistEntry = 0;
  /// Whether the core has turned to the current item.
  bool started = false;
  /// Whether there has been a frame since the item was handed over in its present form.
  bool restarted = false;
  Form form = Form::once;
  bool repeatable = true;
  bool repeating = false;
  /// Of the repeated form: the run that is shown, and the chapters in each.
  std::int64_t run = 0;
  std::int64_t chaptersOfRun = 1;
  /// While the end of a run is told: the next has begun.
  bool startedOver = false;
  PlayerItemStatus status = PlayerItemStatus::unknown;
  bool ended = false;
  ObserverList<PlayerItemStatus> statusObservers;
  ObserverList<> endObservers;
};

/// libmpv's volume (percent, the cube root of the gain; see its manual on --volume) of a linear amplitude of 0 to 1.
double cubicVolume(float amplitude);

}  // namespace quilex
