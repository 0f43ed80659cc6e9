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

/// Carries each decoded frame to the windows that show it: one drawing for each distinct size among the visible
/// surfaces, whatever their number. A frame that no surface can show is dropped undrawn. Main thread.
class VideoOutput {
 public:
  explicit VideoOutput(std::unique_ptr<Renderer> theRenderer);
  ~VideoOutput();
  VideoOutput(const VideoOutput&) = delete;
  VideoOutput& operator=(const VideoOutput&) = delete;

  /// Takes frames from the core, which must be detached before it is destroyed. `restored` is called after a loss of
  /// the renderer, which has closed the core's video.
  void attach(mpv_handle* core, std::function<void()> restored);
  void detach();
  bool turnsPictures() const { return renderer_->turnsPictures(); }
  /// The core has no current frame any more; what was drawn of it stays.
  void frameLost() { hasFrame_ = false; }
  /// The core has dropped frames that came too late.
  void framesDropped(std::uint32_t count) { dropped_.add(MinuteCounter::Time::clock::now(), count); }

  /// In the last minute: frames that at least one window showed, and frames that some window should have shown.
  std::uint32_t framesShown() { return shown_.lastMinute(MinuteCounter::Time::clock::now()); }
  std::uint32_t framesDropped() { return dropped_.lastMinute(MinuteCounter::Time::clock::now()); }

 private:
  friend class VideoSurface;

  struct Drawn {
    std::unique_ptr<Picture> picture;
    /// The frame it shows; 0 for none.
    std::uint64_t frame = 0;
  };

  void frameArrived();
  void dropFrame();
  void connect();
  void checkLost();
  void restore();
  bool canShow(PixelSize size) const;
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
  /// While the renderer is lost.
  std::optional<Disposable> restoration_;
  bool hasFrame_ = false;
  std::uint64_t frameNumber_ = 0;
  MinuteCounter shown_;
  MinuteCounter dropped_;
};

/// One window's share of the picture. Main thread.
class VideoSurface {
 public:
  /// The surface shows `part` of a picture of size `picture` in the window. `ready` is called when there comes to be a
  /// first frame to show. The output must outlive the surface.
  VideoSurface(VideoOutput& videoOutput, NativeWindow nativeWindow, PixelSize picture, PixelRect part,
               std::function<void()> ready);
  ~VideoSurface();
  VideoSurface(const VideoSurface&) = delete;
  VideoSurface& operator=(const VideoSurface&) = delete;

  /// Whether there is anything to show yet.
  bool isReady() const;
  /// An invisible surface is not drawn; surfaces start invisible.
  void setVisible(bool nowVisible) { visible_ = nowVisible; }
  /// Shows the current frame again, if the surface is visible.
  void repaint();
  /// Shows the current frame, if the surface is visible and another one was shown last.
  void catchUp();

 private:
  friend class VideoOutput;

  VideoOutput& output_;
  NativeWindow window_;
  PixelSize size_;
  PixelRect shown_;
  std::function<void()> becameReady_;
  bool visible_ = false;
  /// The frame that was shown last; 0 for none.
  std::uint64_t shownFrame_ = 0;
};

}  // namespace quilex
