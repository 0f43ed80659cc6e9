#pragma once

#include "platform/Geometry.h"
#include "platform/VideoPlayer.h"

namespace quilex {

enum class VideoGravity { resizeAspect, resizeAspectFill, resize };
enum class ControlsStyle { none = 0 };

/// The rectangle in which a window shows a player. It is in the window's coordinates and may be larger than the window,
/// which then shows a part of the picture. The window server draws it. Main thread.
class VideoView {
 public:
  explicit VideoView(Rect rect) : frame(rect) {}
  virtual ~VideoView() = default;
  VideoView(const VideoView&) = delete;
  VideoView& operator=(const VideoView&) = delete;

  Rect frame;
  /// Not owned; outlives the view.
  VideoPlayer* player = nullptr;
  // For window servers that can draw otherwise than filling the view, or with controls.
  VideoGravity videoGravity = VideoGravity::resizeAspect;
  ControlsStyle controlsStyle = ControlsStyle::none;

  /// For window servers to call when the view is drawn, touched or pressed.
  virtual void drawRect(const Rect& /*dirty*/) {}
  virtual void touchesBegan() {}
  virtual void mouseDown() {}
};

}  // namespace quilex
