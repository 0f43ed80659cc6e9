#pragma once

#include "platform/Console.h"
#include "platform/VideoView.h"

namespace quilex {

/// The view of a wallpaper window, which prints a diagnostic line on input.
class PlayerView : public VideoView {
 public:
  /// `console` must outlive the view.
  PlayerView(Rect rect, Console& console) : VideoView(rect), console_(console) {}

  void touchesBegan() override { console_.print("123"); }
  void mouseDown() override {
    VideoView::mouseDown();
    console_.print("mouse down");
  }

 private:
  Console& console_;
};

}  // namespace quilex
