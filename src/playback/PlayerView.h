#pragma once

#include "platform/Console.h"
#include "platform/VideoView.h"

namespace quilex {

/// The video view of a wallpaper window: shows the player's frames and writes a diagnostic line on input.
class PlayerView : public VideoView {
 public:
  /// `console` must outlive the view.
  PlayerView(Rect frameRect, Console& console) : VideoView(frameRect), output_(console) {}

  void drawRect(const Rect& dirty) override { VideoView::drawRect(dirty); }
  void touchesBegan() override { output_.print("123"); }
  void mouseDown() override {
    VideoView::mouseDown();
    output_.print("mouse down");
  }

 private:
  Console& output_;
};

}  // namespace quilex
