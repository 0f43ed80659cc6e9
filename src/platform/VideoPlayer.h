#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "base/Disposable.h"

namespace quilex {

enum class PlayerItemStatus { unknown = 0, readyToPlay = 1, failed = 2 };

/// One video player with at most one current item. It starts paused and without an item. Playing or paused is a
/// state of the player, not of the item: a playing player plays whatever item it is given. At the end of an item it
/// neither advances nor pauses by itself; it shows the last frame until it is told what comes next. Main thread; every
/// call returns at once, and failures show as the item's status.
class VideoPlayer {
 public:
  virtual ~VideoPlayer() = default;

  virtual void play() = 0;
  virtual void pause() = 0;

  virtual bool hasCurrentItem() const = 0;
  /// Makes the video file at an absolute path the current item. The old item's last frame stays on screen until the
  /// new item has a frame.
  virtual void replaceCurrentItem(const std::filesystem::path& file) = 0;
  /// Plays the current item from its start; without an item nothing happens.
  virtual void seekToZero() = 0;
  /// Whether the current item and later ones start over by themselves at their end, without a gap; a repeating item's
  /// end is not notified. Turned off, the item ends at the end of a run soon after. Off at first.
  virtual void setRepeating(bool repeats) = 0;

  /// Linear amplitude, 0 to 1; values outside are limited to that range when they are applied.
  virtual float volume() const = 0;
  virtual void setVolume(float amplitude) = 0;
  virtual bool isMuted() const = 0;
  virtual void setMuted(bool muted) = 0;

  /// Tells changes of the current item's status.
  [[nodiscard]] virtual Disposable observeStatus(std::function<void(PlayerItemStatus)> handler) = 0;
  /// Tells that the current item has been shown to its end. A player that expects the item to be wanted again may show
  /// its start already.
  [[nodiscard]] virtual Disposable observeItemEnd(std::function<void()> handler) = 0;
};

using VideoPlayerFactory = std::function<std::unique_ptr<VideoPlayer>()>;

}  // namespace quilex
