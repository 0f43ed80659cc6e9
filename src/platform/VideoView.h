#pragma once

#include "platform/Geometry.h"
#include "platform/VideoPlayer.h"

namespace quilex {

// For window systems whose player views have a choice; those of Linux always fill the view and have no controls.
enum class VideoGravity { resizeAspect, resizeAspectFill, resize };
enum class ControlsStyle { none = 0 };

/// What a window shows of a player: the player's current frame, laid into `frame` by the gravity. The frame is in the
/// window's own coordinates and may reach beyond the window, which then shows the part inside it. Not clipped or
/// scaled by itself; the window server draws it. Main thread.
class VideoView {
 public:
  explicit VideoView(Rect frameRect) : frame(frameRect) {}
  virtual ~VideoView() = default;
  VideoView(const VideoView&) = delete;
  VideoView& operator=(const VideoView&) = delete;

  Rect frame;
  /// Not owned; outlives the view.
  VideoPlayer* player = nullptr;
  VideoGravity videoGravity = VideoGravity::resizeAspect;
  ControlsStyle controlsStyle = ControlsStyle::none;

  /// Drawing, a touch or a press inside the view; the base class does nothing of its own.
  virtual void drawRect(const Rect& /*dirty*/) {}
  virtual void touchesBegan() {}
  virtual void mouseDown() {}
};

}  // namespace quilex
