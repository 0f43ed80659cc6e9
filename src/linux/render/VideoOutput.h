#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "base/MinuteCounter.h"
#include "linux/render/Renderer.h"
#include "linux/toolkit/loop/QtRunLoop.h"
#include "linux/toolkit/loop/Wakeup.h"

namespace quilex {

class VideoSurface;

/// Brings each decoded frame to the windows that show it. It is drawn once for each distinct size among the
/// `VideoSurface`s that have a target, however many they are. A frame that none of them can show is dropped undrawn.
/// Main thread.
class VideoOutput {
 public:
  explicit VideoOutput(std::unique_ptr<Renderer> renderer);
  ~VideoOutput();
  VideoOutput(const VideoOutput&) = delete;
  VideoOutput& operator=(const VideoOutput&) = delete;

  /// Takes frames from the core, which must be detached before it is destroyed. `restored` is called when the renderer
  /// works again after a loss; the core's video was closed then.
  void attach(mpv_handle* core, std::function<void()> restored);
  void detach();
  bool turnsPictures() const { return renderer_->turnsPictures(); }
  /// The core has no current frame any more. What was drawn before stays.
  void frameLost() { hasFrame_ = false; }
  /// The core has dropped that many frames, which came too late.
  void framesDropped(std::uint32_t count) { dropped_.add(MinuteCounter::Time::clock::now(), count); }

  /// In the last minute: frames that at least one window showed, and frames that some window should have shown.
  std::uint32_t framesShown() { return shown_.lastMinute(MinuteCounter::Time::clock::now()); }
  std::uint32_t framesDropped() { return dropped_.lastMinute(MinuteCounter::Time::clock::now()); }

 private:
  friend class VideoSurface;

  struct Drawn {
    std::unique_ptr<Picture> picture;
    /// The number of the frame it shows; 0 for none.
    std::uint64_t frame = 0;
  };

  void frameArrived();
  bool hasNewFrame() const;
  void showFrame();
  void dropFrame();
  void connect();
  void checkLost();
  void restore();
  bool canShow(PixelSize size) const;
  /// The picture of that size, drawn again if there is a frame that it does not show yet.
  Drawn& drawnAt(PixelSize size);
  void discardUnusedPictures();

  std::unique_ptr<Renderer> renderer_;
  std::map<PixelSize, Drawn> pictures_;
  std::vector<VideoSurface*> surfaces_;
  mpv_handle* source_ = nullptr;
  std::function<void()> rendererRestored_;
  MpvRenderContext context_;
  Wakeup wakeup_;
  QtRunLoop runLoop_;
  /// The next attempt to restore the renderer; only while it is lost.
  std::optional<Disposable> restoration_;
  /// Whether the core has a current frame.
  bool hasFrame_ = false;
  std::uint64_t frameNumber_ = 0;
  MinuteCounter shown_;
  MinuteCounter dropped_;
};

/// One window's share of the video. Main thread.
class VideoSurface {
 public:
  /// Shows a part of a picture, but nothing before it has a target. `ready` is called when the first frame is there.
  /// The output must outlive the surface.
  VideoSurface(VideoOutput& output, const PicturePart& shown, std::function<void()> ready);
  ~VideoSurface();
  VideoSurface(const VideoSurface&) = delete;
  VideoSurface& operator=(const VideoSurface&) = delete;

  /// Whether there is anything to show yet.
  bool isReady() const;
  /// Where frames are shown from the next one on; null, as at first, for nowhere. The target must outlive its use.
  void setTarget(RenderTarget* target) { target_ = target; }
  /// Shows the current frame again, if there is a target.
  void repaint();
  /// Does that only if the current frame was not shown yet.
  void catchUp();

 private:
  friend class VideoOutput;

  VideoOutput& output_;
  PicturePart shown_;
  std::function<void()> becameReady_;
  RenderTarget* target_ = nullptr;
  /// The number of the frame that was shown last; 0 for none.
  std::uint64_t shownFrame_ = 0;
};

}  // namespace quilex
