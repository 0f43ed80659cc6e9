#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "base/Disposable.h"

namespace quilex {

enum class PlayerItemStatus { unknown = 0, readyToPlay = 1, failed = 2 };

/// A video player with at most one current item. It starts paused and without an item. Playing or paused is a state of
/// the player, not of the item: a playing player plays whatever item it gets. At the end of an item it neither advances
/// nor pauses; it keeps showing the last frame. Main thread; every call returns at once, and a failure is the item's
/// status.
class VideoPlayer {
 public:
  virtual ~VideoPlayer() = default;

  virtual void play() = 0;
  virtual void pause() = 0;
  /// While true, nothing is decoded or heard and the last frame stays, whether the player is playing or paused; an item
  /// that comes meanwhile is loaded afterwards. After false a playing player goes on where it was. Off at first.
  virtual void setHeld(bool isHeld) = 0;

  virtual bool hasCurrentItem() const = 0;
  /// Makes the video file at that absolute path the current item. The old item's last frame stays on screen until the
  /// new item has one.
  virtual void replaceCurrentItem(const std::filesystem::path& file) = 0;
  /// Seeks to the start of the current item; without an item nothing happens.
  virtual void seekToZero() = 0;
  /// True makes the current item and later ones start again at their end, without a gap and without a notification.
  /// After false the item ends with its present pass or the next. Off at first.
  virtual void setRepeating(bool repeats) = 0;

  /// Linear amplitude; it is clamped to 0 to 1 when it is applied.
  virtual float volume() const = 0;
  virtual void setVolume(float amplitude) = 0;
  virtual bool isMuted() const = 0;
  virtual void setMuted(bool muted) = 0;

  /// Notifies of changes of the current item's status.
  [[nodiscard]] virtual Disposable observeStatus(std::function<void(PlayerItemStatus)> handler) = 0;
  /// Notifies when the current item has been shown to its end.
  [[nodiscard]] virtual Disposable observeItemEnd(std::function<void()> handler) = 0;
};

using VideoPlayerFactory = std::function<std::unique_ptr<VideoPlayer>()>;

}  // namespace quilex
